// A session with the user's calendar and address book, made for one export.
#pragma once

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "integration/PersonalStore.h"

namespace quillary {

struct Appointment;
struct Contact;
class Questions;

class CPocketOutlook {
  public:
    /// Finds the store and logs on. When either fails it says so once, and the session is not usable.
    CPocketOutlook(std::unique_ptr<PersonalStore> store, Questions& questions);
    ~CPocketOutlook();
    CPocketOutlook(const CPocketOutlook&) = delete;
    CPocketOutlook& operator=(const CPocketOutlook&) = delete;

    [[nodiscard]] bool IsUsable() const { return m_store != nullptr; }
    /// False when the item was not kept, always without a usable session.
    bool CreateAppointment(const Appointment& appointment);
    bool CreateContact(const Contact& contact);
    /// As PersonalStore::Files.
    [[nodiscard]] std::vector<std::filesystem::path> Files() const {
        return m_store ? m_store->Files() : std::vector<std::filesystem::path>();
    }

  private:
    std::unique_ptr<PersonalStore> m_store;
    std::map<std::string, int> m_equalItems;  // of this run, so that each has a name of its own
};

}  // namespace quillary
