// HTTP from a module that is loaded when it is first asked for: libcurl and what it needs take longer to load than a
// person waits for a window.
#pragma once

#include <memory>

#include "remote/HttpSession.h"

namespace quillary {

inline constexpr const char* kHttpModule = "quillary-http.so";

/// What the module exports under kHttpEntry: a session that the caller deletes.
using HttpEntry = HttpSession*();
inline constexpr const char* kHttpEntry = "QuillaryHttpSession";

/// nullptr when the module is not there or lacks a library on this machine.
[[nodiscard]] std::unique_ptr<HttpSession> LoadHttpSession();

}  // namespace quillary
