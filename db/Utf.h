// UTF-8 to UTF-16 and back.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace quillary {

/// nullopt when `utf8` is not well-formed UTF-8 (overlong forms and surrogates are refused too).
[[nodiscard]] std::optional<std::u16string> Utf8ToWide(std::string_view utf8);

/// Whether `utf8` holds one of U+0000 to U+001F and U+007F to U+009F.
[[nodiscard]] bool HasControlCharacter(std::string_view utf8);

/// A lone surrogate becomes U+FFFD.
[[nodiscard]] std::string WideToUtf8(std::u16string_view wide);

/// Appends one code point (0..0x10FFFF).
void AppendUtf8(char32_t codePoint, std::string& out);

}  // namespace quillary
