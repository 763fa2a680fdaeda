// The hash that guards a database or its info text. It enciphers nothing.
#pragma once

#include <cstdint>
#include <string_view>

#include "db/AnsiText.h"

namespace quillary {

struct PasswordParameters {
    std::uint32_t seed;
    std::uint32_t multiplier;
    std::uint32_t subtrahend;
};
inline constexpr PasswordParameters kDatabasePassword{5087, 36529, 17243};
inline constexpr PasswordParameters kInfoLock{6133, 81457, 50621};

/// 0 for an empty text; only its first 255 bytes in `page` count, and characters that the page lacks count as "?".
[[nodiscard]] std::uint32_t HashPassword(const PasswordParameters& parameters, std::u16string_view text,
                                         const AnsiText& page);

}  // namespace quillary
