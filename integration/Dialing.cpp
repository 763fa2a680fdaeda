#include "integration/Dialing.h"

#include "db/Questions.h"
#include "integration/Links.h"

namespace quillary {

Message Dialing::Problem() {
    switch (m_phone.Find()) {
        case PhoneLibrary::State::Missing:
            return Message::NoDialing;
        case PhoneLibrary::State::Modified:
            return Message::PhoneModified;
        case PhoneLibrary::State::There:
            break;
    }
    return Message::None;
}

void Dialing::Tell(Message message) const {
    Failure failure;
    failure.Set(message);
    m_questions.Tell(failure);
}

bool Dialing::CanDial(bool showMessages) {
    if (m_isTested) return m_isAvailable;
    m_isTested = true;
    m_whyNot = Problem();
    m_isAvailable = m_whyNot == Message::None;
    if (!m_isAvailable && showMessages) Tell(m_whyNot);
    return m_isAvailable;
}

void Dialing::DialNumber(std::string_view number) {
    const Message problem = Problem();
    if (problem != Message::None) return Tell(problem);
    m_phone.MakeCall(PhoneLink(number), [&questions = m_questions](int returnCode) {
        Failure failure;
        failure.Set(Message::CallFailed, {std::to_string(returnCode)});
        questions.Tell(failure);
    });
}

}  // namespace quillary
