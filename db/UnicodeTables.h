// Two properties of UTF-16 units that the C library only knows per locale. The tables are made by tools/unicode-tables
// from the Unicode Character Database, version 15.
#pragma once

namespace quillary {

/// The one-to-one upper-case mapping (ß stays, ÿ becomes Ÿ, µ a capital mu); surrogates stay.
[[nodiscard]] char16_t UpperCase(char16_t unit);

/// True for a letter (general category L); false for surrogates.
[[nodiscard]] bool IsLetter(char16_t unit);

}  // namespace quillary
