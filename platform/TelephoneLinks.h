// The desktop's handler of "tel" links as the phone library.
#pragma once

#include <utility>

#include "integration/PhoneLibrary.h"
#include "platform/Launcher.h"

namespace quillary {

class TelephoneLinks : public PhoneLibrary {
  public:
    /// `launcher` outlives it.
    explicit TelephoneLinks(Launcher& launcher) : m_launcher(launcher) {}

    [[nodiscard]] State Find() override {
        switch (m_launcher.ProgramFor("tel")) {
            case Launcher::Program::None:
                return State::Missing;
            case Launcher::Program::Missing:
                return State::Modified;
            case Launcher::Program::There:
                break;
        }
        return State::There;
    }
    void MakeCall(const std::string& link, Refused refused) override {
        m_launcher.StartProgramFor(link, std::move(refused));
    }

  private:
    Launcher& m_launcher;
};

}  // namespace quillary
