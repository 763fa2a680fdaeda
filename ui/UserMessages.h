// The numbers of the messages that the program's own parts post to each other; they never change.
#pragma once

#include <QEvent>

namespace quillary {

/// To the hand-over: open the files that have been handed over, or go on with it.
inline constexpr auto kOpenFileMessage = static_cast<QEvent::Type>(0x464);

// To the record form.
/// From viewing to editing.
inline constexpr auto kEditMessage = static_cast<QEvent::Type>(0x465);
/// To the next editor; one line down while viewing.
inline constexpr auto kNextMessage = static_cast<QEvent::Type>(0x466);
/// To the previous editor; one line up while viewing.
inline constexpr auto kPreviousMessage = static_cast<QEvent::Type>(0x467);
/// Scrolls until the focused control is in sight.
inline constexpr auto kMakeVisibleMessage = static_cast<QEvent::Type>(0x468);
/// Raises the input panel when typing can begin in the first field.
inline constexpr auto kRaisePanelMessage = static_cast<QEvent::Type>(0x47b);

// To the dialog that shows a download's progress, from the download's own thread.
/// How many files there are to fetch.
inline constexpr auto kDownloadStartMessage = static_cast<QEvent::Type>(0x464);
/// All is done.
inline constexpr auto kDownloadDoneMessage = static_cast<QEvent::Type>(0x465);
/// One file begins.
inline constexpr auto kDownloadFileMessage = static_cast<QEvent::Type>(0x466);

}  // namespace quillary
