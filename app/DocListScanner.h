// Fills the document list on a thread of its own, so that the window stays live.
#pragma once

#include <QObject>
#include <atomic>
#include <functional>
#include <thread>
#include <vector>

#include "app/DocListRow.h"

namespace quillary {

class CDocListScanner : public QObject {
  public:
    struct Result {
        std::vector<Path> unreadable;  // folders
    };
    using Found = std::function<void(std::vector<DocListRow>)>;
    using Done = std::function<void(Result)>;

    /// Both are called on the interface thread: `found` with one batch after the other, then `done`.
    CDocListScanner(FileAccess& files, Found found, Done done);
    ~CDocListScanner() override;

    /// Begins anew when a scan is running; nothing of that one is told any more.
    void Start(const Path& mainFolder, std::vector<Path> roots);
    void Stop();
    [[nodiscard]] bool IsRunning() const { return m_thread.joinable(); }

  protected:
    void customEvent(QEvent* event) override;

  private:
    FileAccess& m_files;
    Found m_found;
    Done m_done;
    std::atomic<bool> m_stop = false;
    std::thread m_thread;
};

}  // namespace quillary
