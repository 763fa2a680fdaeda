// Small forms of text that several commands print.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillary {

/// `utf8` as a JSON string, quotes included.
void AppendJsonString(std::string_view utf8, std::string& out);

/// `text` in quotes, for a message.
[[nodiscard]] std::string Quoted(std::string_view text);

/// The candidate that is the fewest typing mistakes away from `typed`, the first of equal ones.
[[nodiscard]] std::string_view NearestName(std::string_view typed, const std::vector<std::string_view>& candidates);

/// One line that does no harm to a terminal: line breaks become blanks, other control characters "?".
[[nodiscard]] std::string OneLine(std::string_view text);

/// An optional "-" and digits; what 64 bits cannot hold is the nearest number that they can.
[[nodiscard]] std::optional<std::int64_t> ReadWholeNumber(std::string_view text);

}  // namespace quillary
