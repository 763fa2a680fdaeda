// Tells that something changed in one of the folders that are watched. Only that: what changed is found by looking.
#pragma once

#include <chrono>
#include <unordered_set>

#include "platform/posix/PosixFile.h"

namespace quillary {

class FolderWatch {
  public:
    FolderWatch();

    /// Folders that are not added between two calls of these are watched no more.
    void BeginRound();
    void Add(const Path& folder);
    void EndRound();

    /// False when the system refused to watch a folder: then looking now and then is the only way.
    [[nodiscard]] bool SeesAll() const { return m_seesAll; }

    /// Waits until something changed, the time is over, or `stop`, a descriptor, can be read.
    enum class Event { Changed, TimeOver, Stop };
    [[nodiscard]] Event Wait(std::chrono::milliseconds longest, int stop);

  private:
    PosixFile m_inotify;
    std::unordered_set<int> m_watches;
    std::unordered_set<int> m_before;
    bool m_seesAll = true;
};

}  // namespace quillary
