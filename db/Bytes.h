// Reads and writes the integers of the file format, which are big-endian unless a caller says otherwise.
#pragma once

#include <cstdint>

namespace quillary {

inline std::uint16_t LoadBig16(const char* at) {
    const auto* b = reinterpret_cast<const unsigned char*>(at);
    return static_cast<std::uint16_t>(b[0] << 8 | b[1]);
}

inline std::uint32_t LoadBig32(const char* at) {
    return static_cast<std::uint32_t>(LoadBig16(at)) << 16 | LoadBig16(at + 2);
}

inline void StoreBig16(char* at, std::uint16_t value) {
    at[0] = static_cast<char>(value >> 8);
    at[1] = static_cast<char>(value);
}

inline void StoreBig32(char* at, std::uint32_t value) {
    StoreBig16(at, static_cast<std::uint16_t>(value >> 16));
    StoreBig16(at + 2, static_cast<std::uint16_t>(value));
}

inline void StoreLittle32(char* at, std::uint32_t value) {
    for (int i = 0; i < 4; ++i) at[i] = static_cast<char>(value >> (8 * i));
}

}  // namespace quillary
