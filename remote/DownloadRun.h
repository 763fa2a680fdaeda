// Downloads what is ticked among a search's results, on a thread of its own. What has been fetched is ticked no more.
#pragma once

#include <atomic>
#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "db/AnsiText.h"
#include "db/FileAccess.h"

namespace quillary {

class CRemoteCatalog;
struct CRemoteResult;

class DownloadRun {
  public:
    /// All are called on the run's thread.
    struct Events {
        std::function<void(std::size_t files)> start;  // how many there are to fetch
        /// Before the first file. nullopt when the user gives up, which ends the run.
        std::function<std::optional<Path>()> askFolder;
        std::function<void(std::size_t result, const std::string& name)> begin;  // one file; its name in the code page
        std::function<void()> done;                                              // the last call
    };

    /// Begins at once. The catalogue is the run's alone until it has ended.
    DownloadRun(CRemoteCatalog& catalog, FileAccess& files, const AnsiText& page, Events events);
    /// Waits for the end.
    ~DownloadRun();
    DownloadRun(const DownloadRun&) = delete;
    DownloadRun& operator=(const DownloadRun&) = delete;

    /// Stops before the next file; the one that is being written is finished.
    void Stop() { m_stop = true; }
    void Wait();

    // After the end.
    [[nodiscard]] const std::vector<Path>& Kept() const { return m_kept; }
    struct Missed {
        std::string name;    // in the code page
        std::string reason;  // UTF-8
    };
    [[nodiscard]] const std::vector<Missed>& NotFetched() const { return m_missed; }

  private:
    void Run();
    /// Fetches the files of ticked packages that nobody has opened.
    [[nodiscard]] std::size_t CountFiles();
    [[nodiscard]] bool Fetch(std::size_t result, CRemoteResult& item, bool isInPackage);

    CRemoteCatalog& m_catalog;
    FileAccess& m_files;
    const AnsiText& m_page;
    const Events m_events;
    std::optional<Path> m_folder;
    std::vector<Path> m_kept;
    std::vector<Missed> m_missed;
    std::atomic<bool> m_stop = false;
    std::thread m_thread;
};

}  // namespace quillary
