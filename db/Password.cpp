#include "db/Password.h"

namespace quillary {

std::uint32_t HashPassword(const PasswordParameters& parameters, std::u16string_view text, const AnsiText& page) {
    constexpr std::size_t kMaxBytes = 255;
    std::string bytes = page.FromWideForHashing(text);
    const std::size_t n = bytes.size() < kMaxBytes ? bytes.size() : kMaxBytes;
    std::uint32_t hash = n == 0 ? 0 : parameters.seed;
    // Bytes count as signed numbers; wrapping around 2^32 is part of the hash.
    const auto signedByte = [&bytes](std::size_t k) {
        return static_cast<std::uint32_t>(static_cast<std::int32_t>(static_cast<signed char>(bytes[k])));
    };
    for (std::size_t i = 0; i < n; ++i) {
        hash = hash * parameters.multiplier - signedByte(n - 1 - i) * parameters.subtrahend + signedByte(i);
    }
    volatile char* wiped = bytes.data();
    for (std::size_t i = 0; i < bytes.size(); ++i) wiped[i] = 0;
    return hash;
}

}  // namespace quillary
