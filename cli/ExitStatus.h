// What qly answers to the process that started it.
#pragma once

namespace quillary {

enum class ExitStatus {
    Done = 0,
    Refused = 1,     // refused or failed; for find and check: the answer is no
    WrongUsage = 2,  // the command line itself makes no sense
    Failed = 3,      // find and check could not answer
};

}  // namespace quillary
