// Looks through folders for databases. Reads a little of each file that is called like one, writes nothing, follows no
// link, and is safe from whatever lies there.
#pragma once

#include <cstdint>
#include <vector>

#include "db/FileAccess.h"

namespace quillary {

struct FoundDatabase {
    Path path;
    std::uint64_t size;
    std::int64_t modified;  // seconds since the epoch
};

/// Called on the scan's own thread.
class ScanReceiver {
  public:
    virtual ~ScanReceiver() = default;
    virtual void Found(FoundDatabase database) = 0;
    /// A folder whose databases, if it holds any, stay unknown.
    virtual void Unreadable(const Path& folder) = 0;
    /// Asked at every name; false ends the scan.
    [[nodiscard]] virtual bool GoOn() = 0;
};

/// Looks below each root, that is there, 8 levels deep: not into hidden folders, nor onto other file systems. A folder
/// that lies below two roots is looked at once. `files` knows of recovery copies: a file that a stopped save left half
/// written need not look like a database, and is found all the same.
void ScanFolders(const std::vector<Path>& roots, FileAccess& files, ScanReceiver& receiver);

}  // namespace quillary
