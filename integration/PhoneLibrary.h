// What places calls for this program.
#pragma once

#include <functional>
#include <string>

namespace quillary {

class PhoneLibrary {
  public:
    enum class State {
        Missing,   // nothing here places calls
        Modified,  // what should place them lacks its program
        There,
    };
    /// Called later, on the interface thread, with what the phone program has ended with.
    using Refused = std::function<void(int returnCode)>;

    virtual ~PhoneLibrary() = default;
    [[nodiscard]] virtual State Find() = 0;
    /// Hands over a link of the scheme "tel". `refused` is not called when the call was taken.
    virtual void MakeCall(const std::string& link, Refused refused) = 0;
};

}  // namespace quillary
