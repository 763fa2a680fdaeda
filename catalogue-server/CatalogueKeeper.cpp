#include "catalogue-server/CatalogueKeeper.h"

#include <sys/eventfd.h>

#include <algorithm>

namespace quillary {

namespace {

using std::chrono::milliseconds;

constexpr milliseconds kSettling{50};         // one change is seldom alone
constexpr milliseconds kUnsettled{100};       // until a file that was being written is looked at again
constexpr milliseconds kWithoutEvents{5000};  // where the system does not tell of changes
constexpr milliseconds kAnyway{60000};        // some file systems tell of none and do not say so
constexpr int kRest = 10;                     // looking takes at most this part of the time,
constexpr milliseconds kLongestRest{3000};    // but nobody waits longer for it

}  // namespace

CatalogueKeeper::CatalogueKeeper(Path folder, const AnsiText& page, FolderIndexer::Report report)
    : m_indexer(std::move(folder), page, std::move(report)),
      m_stop(eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)),
      m_current(std::make_shared<const Catalogue>()) {}

CatalogueKeeper::~CatalogueKeeper() {
    m_stopping = true;
    (void)eventfd_write(m_stop.Descriptor(), 1);
    if (m_thread.joinable()) m_thread.join();
}

void CatalogueKeeper::Follow() {
    m_thread = std::thread([this] { FollowChanges(); });
}

std::shared_ptr<const Catalogue> CatalogueKeeper::Current() const {
    const std::lock_guard<std::mutex> lock(m_mutex);
    return m_current;
}

bool CatalogueKeeper::Look() {
    const auto begun = std::chrono::steady_clock::now();
    m_watch.BeginRound();
    FolderIndexer::Look look =
        m_indexer.LookThrough([this](const Path& folder) { m_watch.Add(folder); }, [this] { return !m_stopping; });
    m_watch.EndRound();
    m_lookTook = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - begun);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_current.swap(look.catalogue);
    return look.isUnsettled;
}

void CatalogueKeeper::FollowChanges() {
    using Event = FolderWatch::Event;
    while (!m_stopping) {
        milliseconds longest = m_watch.SeesAll() ? kAnyway : kWithoutEvents;
        // A large folder in which much happens is not looked through all the time.
        const milliseconds rest = std::min(m_lookTook * kRest, kLongestRest);
        if (m_lookAgain) longest = std::max(kUnsettled, rest);
        Event event = m_watch.Wait(longest, m_stop.Descriptor());
        // What happens meanwhile is seen by the look that follows.
        const auto until = std::chrono::steady_clock::now() + std::max(kSettling, rest);
        while (event == Event::Changed) {
            const auto left = std::chrono::duration_cast<milliseconds>(until - std::chrono::steady_clock::now());
            if (left <= milliseconds::zero()) break;
            event = m_watch.Wait(left, m_stop.Descriptor());
        }
        if (event == Event::Stop) return;
        m_lookAgain = Look();
    }
}

}  // namespace quillary
