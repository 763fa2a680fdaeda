// Folders watched by the kernel. Qt's own watcher looks at a folder's names alone, so that it misses a file that is
// written again under its old name.
#pragma once

#include <map>
#include <memory>

#include "platform/FolderWatcher.h"
#include "platform/posix/PosixFile.h"

class QSocketNotifier;

namespace quillary {

class DesktopFolderWatcher : public FolderWatcher {
  public:
    /// Needs the application object, as its events come through Qt's event loop.
    DesktopFolderWatcher();
    ~DesktopFolderWatcher() override;

    bool Watch(const std::vector<std::filesystem::path>& folders) override;

  private:
    void ReadEvents();

    PosixFile m_events;
    PosixFile m_mounts;
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::unique_ptr<QSocketNotifier> m_mountNotifier;
    std::map<std::filesystem::path, int> m_watches;
};

}  // namespace quillary
