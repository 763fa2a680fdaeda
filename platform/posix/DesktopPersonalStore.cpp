#include "platform/posix/DesktopPersonalStore.h"

#include <ctime>
#include <utility>

#include "admin/Settings.h"
#include "integration/VCard.h"
#include "platform/posix/CalendarText.h"
#include "platform/posix/EvolutionModule.h"
#include "platform/posix/FileItemKeeper.h"

namespace quillary {

Path DesktopPersonalStore::EvolutionModulePath() { return CompanionPath(kEvolutionModule); }

DesktopPersonalStore::DesktopPersonalStore(const Settings& settings, Path evolutionModule)
    : m_usesFiles(settings.ReadText(kPersonalStore, "") == kPersonalStoreFiles),
      m_evolutionModule(std::move(evolutionModule)) {}

bool DesktopPersonalStore::Create() {
    if (!m_usesFiles) m_keeper = LoadEvolutionKeeper(m_evolutionModule);
    if (!m_keeper) m_keeper = std::make_unique<FileItemKeeper>();
    return m_keeper->Create();
}

bool DesktopPersonalStore::AddAppointment(const Appointment& appointment, const std::string& uid) {
    const std::string text = CalendarText(appointment, uid, std::time(nullptr));
    return !text.empty() && m_keeper->KeepEvent(text, uid);
}

bool DesktopPersonalStore::AddContact(const Contact& contact, const std::string& uid) {
    return m_keeper->KeepCard(VCardText(contact, uid), uid);
}

std::vector<std::filesystem::path> DesktopPersonalStore::Files() const {
    return m_keeper ? m_keeper->Files() : std::vector<std::filesystem::path>();
}

}  // namespace quillary
