// Small forms of text that the answers and the page for browsers are made of. All texts are UTF-8.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace quillary {

/// What texts are compared by where case does not count.
[[nodiscard]] std::string FoldedText(std::string_view utf8);

/// `bytes` when they are UTF-8; else with a question mark for each byte that is not ASCII.
[[nodiscard]] std::string ValidText(std::string_view bytes);

/// Without blanks and control characters at both ends.
[[nodiscard]] std::string_view TrimmedText(std::string_view text);

/// Kilobytes with one decimal; what holds anything shows at least 0.1.
[[nodiscard]] std::string KilobytesText(std::uint64_t bytes);

/// "%41" as "A"; a "%" without two hexadecimal digits stays.
[[nodiscard]] std::string PercentDecoded(std::string_view text);
/// Every byte but ASCII letters, digits and "-._~" as "%41".
[[nodiscard]] std::string PercentEncoded(std::string_view bytes);

/// For text and quoted attributes of HTML; control characters become blanks.
[[nodiscard]] std::string HtmlEscaped(std::string_view text);

/// Sixteen hexadecimal digits.
[[nodiscard]] std::string HexText(std::uint64_t number);

/// The longest title, and the longest name of a file in a package, in bytes: answers of many of them stay small.
inline constexpr std::size_t kLongestName = 255;
/// At most so many bytes from the beginning, or the end, of a UTF-8 text, cut between characters.
[[nodiscard]] std::string_view BeginningOf(std::string_view text, std::size_t most);
[[nodiscard]] std::string_view EndOf(std::string_view text, std::size_t most);

}  // namespace quillary
