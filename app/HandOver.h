// Opens here what another start of the program was asked to open, or what is dropped on the window.
#pragma once

#include <QObject>
#include <deque>
#include <functional>

#include "db/FileAccess.h"
#include "platform/SingleInstance.h"

namespace quillary {

class CMainFrame;

class CHandOver : public QObject {
  public:
    using Open = std::function<void(const Path&)>;

    CHandOver(CMainFrame& frame, Open open);

    /// Hands the request to the program that runs already. False when it has taken it and this one is to end; else
    /// later requests are received here.
    [[nodiscard]] bool Start(SingleInstance& instances, const LaunchRequest& request);

    /// Brings the window to the front, and opens the request's file when the command handler that is running has
    /// returned. An open dialog ends with Cancel; one that holds changes asks first.
    void Receive(const LaunchRequest& request);

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void PostNext();
    void OpenNext();
    void EndDialogsAndOpen(const Path& path);

    CMainFrame& m_frame;
    Open m_open;
    std::deque<Path> m_paths;  // that wait for their turn
    bool m_busy = false;       // with one that is none of them any more
};

}  // namespace quillary
