// The keys that run a command: from anywhere in the main window, or in the record form.
#pragma once

#include <Qt>
#include <span>

namespace quillary {

struct Accelerator {
    QKeyCombination key;
    int command;
    bool repeats = false;  // while the key is held
};

[[nodiscard]] std::span<const Accelerator> AllAccelerators();
[[nodiscard]] std::span<const Accelerator> RecordFormAccelerators();

}  // namespace quillary
