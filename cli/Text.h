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

/// " Did you mean X?" with the one of `names` that `typed` was probably meant to be: a slip or two of the finger away,
/// or begun and not ended. Empty when there is none.
[[nodiscard]] std::string NearestNameHint(std::string_view typed, const std::vector<std::string_view>& names);

/// `utf8` with its control characters, but those in `kept`, as their code points, "U+001B": a terminal would obey them.
[[nodiscard]] std::string ShowControls(std::string_view utf8, std::string_view kept, std::string_view prefix = "U+");

/// `utf8` on one line: ShowControls that keeps none.
[[nodiscard]] std::string OneLine(std::string_view utf8);

/// "1 record", "2 records".
[[nodiscard]] std::string Counted(std::uint64_t number, std::string_view noun);

/// An optional "-" and digits; what 64 bits cannot hold is the nearest number that they can.
[[nodiscard]] std::optional<std::int64_t> ReadWholeNumber(std::string_view text);

}  // namespace quillary
