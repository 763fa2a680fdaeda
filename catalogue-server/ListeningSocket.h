// The socket that a server listens on, with messages that a person understands when it cannot be had.
#pragma once

#include <cstdint>
#include <string>

#include "platform/posix/PosixFile.h"

namespace quillary {

/// `address` is a numeric one of either family; port 0 becomes one that is free. False with a message for the user.
[[nodiscard]] bool Listen(const std::string& address, std::uint16_t& port, PosixFile& socket, std::string& message);

}  // namespace quillary
