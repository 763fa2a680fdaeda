// The keys that run a command from anywhere in the main window.
#pragma once

#include <Qt>
#include <span>

namespace quillary {

struct Accelerator {
    QKeyCombination key;
    int command;
};

[[nodiscard]] std::span<const Accelerator> AllAccelerators();

}  // namespace quillary
