// Asks a catalogue's server while the window stays live: a box tells what is awaited, and its Cancel breaks it off.
#pragma once

#include <functional>

class QString;

namespace quillary {

class CRemoteCatalog;
class FrameWindow;

enum class RequestEnd { Through, Failed, Stopped };

/// `request` is one of the catalogue's operations and runs on a thread of its own. `doing` says what for.
[[nodiscard]] RequestEnd RunRequest(CRemoteCatalog& catalog, FrameWindow& frame, const QString& doing,
                                    const std::function<bool(CRemoteCatalog&)>& request);

/// "No results returned.", and below it the reason when the last request failed.
void TellNoResults(const CRemoteCatalog& catalog, FrameWindow& frame);

}  // namespace quillary
