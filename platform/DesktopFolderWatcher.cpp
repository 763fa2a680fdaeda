#include "platform/DesktopFolderWatcher.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <unistd.h>

#include <QSocketNotifier>
#include <array>
#include <cerrno>
#include <set>

namespace quillary {

namespace {

constexpr std::uint32_t kWatched = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_ATTRIB |
                                   IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

}  // namespace

DesktopFolderWatcher::DesktopFolderWatcher()
    : m_events(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)), m_mounts(open("/proc/self/mounts", O_RDONLY | O_CLOEXEC)) {
    if (m_events) {
        m_notifier = std::make_unique<QSocketNotifier>(m_events.Descriptor(), QSocketNotifier::Read);
        QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { ReadEvents(); });
    }
    if (m_mounts) {
        // The kernel tells of cards that come and go as an exceptional state of this file.
        m_mountNotifier = std::make_unique<QSocketNotifier>(m_mounts.Descriptor(), QSocketNotifier::Exception);
        QObject::connect(m_mountNotifier.get(), &QSocketNotifier::activated, [this] { TellChange(); });
    }
}

DesktopFolderWatcher::~DesktopFolderWatcher() = default;

bool DesktopFolderWatcher::Watch(const std::vector<std::filesystem::path>& folders) {
    if (!m_events) return folders.empty();
    const std::set<std::filesystem::path> wanted(folders.begin(), folders.end());
    for (auto watch = m_watches.begin(); watch != m_watches.end();) {
        if (wanted.contains(watch->first)) {
            ++watch;
            continue;
        }
        inotify_rm_watch(m_events.Descriptor(), watch->second);
        watch = m_watches.erase(watch);
    }
    bool allWatched = true;
    for (const std::filesystem::path& folder : wanted) {
        // Asked for again too: another folder may have taken the name, and costs nothing when none has.
        const int watch = inotify_add_watch(m_events.Descriptor(), folder.c_str(), kWatched);
        if (watch >= 0) {
            m_watches[folder] = watch;
        } else if (errno == ENOSPC || errno == ENOMEM) {
            allWatched = false;
        }
    }
    return allWatched;
}

void DesktopFolderWatcher::ReadEvents() {
    alignas(inotify_event) std::array<char, 16384> events;
    bool any = false;
    while (read(m_events.Descriptor(), events.data(), events.size()) > 0) any = true;
    if (any) TellChange();
}

}  // namespace quillary
