// The calendar and the address book of the user's desktop: Evolution's where the session has them, else files.
#pragma once

#include <memory>
#include <string>

#include "integration/PersonalStore.h"
#include "platform/posix/ItemKeeper.h"
#include "platform/posix/ProgramFolder.h"

namespace quillary {

class Settings;

class DesktopPersonalStore : public PersonalStore {
  public:
    /// Cheap: the choice is made, and what it needs is loaded, by Create. The preference "PersonalStore" is read here.
    explicit DesktopPersonalStore(const Settings& settings, Path evolutionModule = EvolutionModulePath());

    bool Create() override;
    bool LogOn() override { return m_keeper->LogOn(); }
    std::string Reason() const override { return m_keeper->Reason(); }
    bool AddAppointment(const Appointment& appointment, const std::string& uid) override;
    bool AddContact(const Contact& contact, const std::string& uid) override;
    std::vector<std::filesystem::path> Files() const override;

  private:
    [[nodiscard]] static Path EvolutionModulePath();

    bool m_usesFiles;
    Path m_evolutionModule;
    std::unique_ptr<ItemKeeper> m_keeper;  // from Create on
};

}  // namespace quillary
