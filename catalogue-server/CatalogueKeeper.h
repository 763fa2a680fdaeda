// Keeps the catalogue current on a thread of its own, as files come and go.
#pragma once

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>

#include "catalogue-server/FolderIndexer.h"
#include "catalogue-server/FolderWatch.h"

namespace quillary {

class CatalogueKeeper {
  public:
    /// `page` must outlive it. `report` is called on the thread that looks.
    CatalogueKeeper(Path folder, const AnsiText& page, FolderIndexer::Report report);
    ~CatalogueKeeper();
    CatalogueKeeper(const CatalogueKeeper&) = delete;
    CatalogueKeeper& operator=(const CatalogueKeeper&) = delete;

    /// Looks through the folder once, on the caller's thread. A thread is begun by Follow alone, which looks again
    /// whenever something changes.
    void FirstLook() { m_lookAgain = Look(); }
    void Follow();
    /// A state of its own, that no change touches.
    [[nodiscard]] std::shared_ptr<const Catalogue> Current() const;

  private:
    /// Whether to look again soon.
    [[nodiscard]] bool Look();
    void FollowChanges();

    FolderIndexer m_indexer;
    FolderWatch m_watch;
    PosixFile m_stop;
    std::atomic<bool> m_stopping{false};
    std::chrono::milliseconds m_lookTook{0};
    bool m_lookAgain = false;
    mutable std::mutex m_mutex;
    std::shared_ptr<const Catalogue> m_current;
    std::thread m_thread;
};

}  // namespace quillary
