// Puts an operation's questions and messages to the person at the window.
#pragma once

#include <cstdint>

#include "db/Questions.h"

namespace quillary {

class FrameWindow;

class CWindowQuestions : public Questions {
  public:
    /// `knownLockWord`: of a password that the user has given already; 0 for none. A quiet one tells and asks nothing.
    explicit CWindowQuestions(FrameWindow& frame, std::uint32_t knownLockWord = 0, bool quiet = false)
        : m_frame(frame), m_knownLockWord(knownLockWord), m_quiet(quiet) {}
    void Tell(const Failure& failure) override;
    [[nodiscard]] bool AskDatabasePassword(const CQuillaryDoc& doc) override;

  private:
    FrameWindow& m_frame;
    std::uint32_t m_knownLockWord;
    bool m_quiet;
};

}  // namespace quillary
