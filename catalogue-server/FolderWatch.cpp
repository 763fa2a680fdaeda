#include "catalogue-server/FolderWatch.h"

#include <poll.h>
#include <sys/inotify.h>
#include <unistd.h>

namespace quillary {

namespace {

constexpr std::uint32_t kChanges = IN_CREATE | IN_DELETE | IN_MOVED_FROM | IN_MOVED_TO | IN_CLOSE_WRITE | IN_ATTRIB |
                                   IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR;

}  // namespace

FolderWatch::FolderWatch() : m_inotify(inotify_init1(IN_NONBLOCK | IN_CLOEXEC)) {}

void FolderWatch::BeginRound() {
    m_before = std::move(m_watches);
    m_watches.clear();
    m_seesAll = static_cast<bool>(m_inotify);
}

void FolderWatch::Add(const Path& folder) {
    const int watch = m_inotify ? inotify_add_watch(m_inotify.Descriptor(), folder.c_str(), kChanges) : -1;
    if (watch < 0) {
        m_seesAll = false;
    } else {
        m_watches.insert(watch);
    }
}

void FolderWatch::EndRound() {
    for (const int watch : m_before) {
        if (!m_watches.contains(watch)) inotify_rm_watch(m_inotify.Descriptor(), watch);
    }
    m_before.clear();
}

FolderWatch::Event FolderWatch::Wait(std::chrono::milliseconds longest, int stop) {
    pollfd waited[] = {{stop, POLLIN, 0}, {m_inotify.Descriptor(), POLLIN, 0}};
    if (poll(waited, 2, static_cast<int>(longest.count())) <= 0) return Event::TimeOver;
    if (waited[0].revents != 0) return Event::Stop;
    char events[8192];
    while (read(m_inotify.Descriptor(), events, sizeof events) > 0) {
    }
    return Event::Changed;
}

}  // namespace quillary
