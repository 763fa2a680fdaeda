// Puts an operation's questions and messages to the person at the window.
#pragma once

#include "db/Questions.h"

namespace quillary {

class FrameWindow;

class CWindowQuestions : public Questions {
  public:
    explicit CWindowQuestions(FrameWindow& frame) : m_frame(frame) {}
    void Tell(const Failure& failure) override;
    [[nodiscard]] bool AskDatabasePassword(const CQuillaryDoc& doc) override;

  private:
    FrameWindow& m_frame;
};

}  // namespace quillary
