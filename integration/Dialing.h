// Dials phone numbers, and knows whether this computer can.
#pragma once

#include <string_view>

#include "db/Messages.h"
#include "integration/PhoneLibrary.h"

namespace quillary {

class Questions;

class Dialing {
  public:
    /// Both outlive it, and it outlives the program's windows.
    Dialing(PhoneLibrary& phone, Questions& questions) : m_phone(phone), m_questions(questions) {}

    /// Tested once; whatever is installed later changes nothing. Only that test can show a message.
    [[nodiscard]] bool CanDial(bool showMessages);
    /// Why CanDial answers no; Message::None before it is asked, and when it answers yes.
    [[nodiscard]] Message WhyNot() const { return m_whyNot; }

    /// Places a call to a number given as text (UTF-8), also an empty one, and tells when that fails.
    void DialNumber(std::string_view number);

  private:
    [[nodiscard]] Message Problem();
    void Tell(Message message) const;

    PhoneLibrary& m_phone;
    Questions& m_questions;
    bool m_isTested = false;
    bool m_isAvailable = false;
    Message m_whyNot = Message::None;
};

}  // namespace quillary
