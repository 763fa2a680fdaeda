// The process's standard streams and signals: what the standard library does not say about them.
#pragma once

#include <string>
#include <string_view>

namespace quillary {

enum class StandardStream { Input = 0, Output = 1, Error = 2 };

/// To be called before any file is opened. A stream that the caller left closed becomes one that refuses every read and
/// write, so that no database can take its number. A closed pipe or a file size limit becomes a failing write, not a
/// kill.
void PrepareStandardStreams();

[[nodiscard]] bool IsTerminal(StandardStream stream);

enum class WriteResult { Done, ReaderLeft, Failed };
/// `reason` receives the system's text when it failed.
[[nodiscard]] WriteResult WriteAll(StandardStream stream, std::string_view bytes, std::string& reason);

}  // namespace quillary
