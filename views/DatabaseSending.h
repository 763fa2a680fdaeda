// The commands that send the open database's file to other people or devices.
#pragma once

namespace quillary {

class CDocumentSession;
class CommandState;
class FrameWindow;
class Launcher;

class CDatabaseSending {
  public:
    /// All outlive it.
    CDatabaseSending(CDocumentSession& session, Launcher& launcher, FrameWindow& frame)
        : m_session(session), m_launcher(launcher), m_frame(frame) {}

    void SendByMail();
    void SendByInfrared();
    void UpdateInfrared(CommandState& state) const;

  private:
    CDocumentSession& m_session;
    Launcher& m_launcher;
    FrameWindow& m_frame;
};

}  // namespace quillary
