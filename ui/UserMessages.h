// The numbers of the messages that the program's own parts post to each other; they never change.
#pragma once

#include <QEvent>

namespace quillary {

/// To the hand-over: open the files that have been handed over, or go on with it.
inline constexpr auto kOpenFileMessage = static_cast<QEvent::Type>(0x464);

}  // namespace quillary
