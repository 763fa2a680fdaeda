// Digits and letters of ASCII in stored bytes, the same under every locale.
#pragma once

namespace quillary {

[[nodiscard]] constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
[[nodiscard]] constexpr char AsciiLower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c + ('a' - 'A')) : c;
}
[[nodiscard]] constexpr char AsciiUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - ('a' - 'A')) : c;
}
[[nodiscard]] constexpr bool IsAsciiLetter(char c) { return AsciiLower(c) >= 'a' && AsciiLower(c) <= 'z'; }

}  // namespace quillary
