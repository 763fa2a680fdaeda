// A command line as it stands in bash while it is typed, and words as they are put into it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace quillary {

struct BashLine {
    std::vector<std::string> words;  // without their quotes; nothing in them is expanded. The last one is being typed
    /// How many bytes at the beginning of the last word bash leaves as they are when it puts a completion in.
    std::size_t kept = 0;
    char quote = 0;  // that is open at the end: ' or "
};

/// Bash completes what stands behind an open quote, or else behind the last of `breaks` that is not quoted.
[[nodiscard]] BashLine ReadBashLine(std::string_view line, std::string_view breaks);

/// What gives `text` behind the open `quote`, or without one.
[[nodiscard]] std::string QuoteForBash(std::string_view text, char quote);

}  // namespace quillary
