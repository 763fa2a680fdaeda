#include "query/KeyedRows.h"

#include <array>
#include <bit>
#include <cstddef>

namespace quillary {

namespace {

constexpr std::size_t kBytes = sizeof(std::uint64_t);
using Counts = std::array<std::uint32_t, 256>;

std::uint8_t ByteOf(std::uint64_t key, std::size_t byte) { return static_cast<std::uint8_t>(key >> (8 * byte)); }

}  // namespace

void SortByKey(std::vector<KeyedRow>& rows, std::vector<KeyedRow>& spare) {
    if (rows.empty()) return;
    std::array<Counts, kBytes> counts{};
    for (const KeyedRow& row : rows) {
        for (std::size_t byte = 0; byte < kBytes; ++byte) ++counts[byte][ByteOf(row.key, byte)];
    }
    spare.resize(rows.size());
    // From the lowest byte up; each pass keeps the order of the one before among equals.
    for (std::size_t byte = 0; byte < kBytes; ++byte) {
        Counts& places = counts[byte];
        if (places[ByteOf(rows.front().key, byte)] == rows.size()) continue;  // all have this byte
        std::uint32_t place = 0;
        for (std::uint32_t& count : places) {
            const std::uint32_t here = count;
            count = place;
            place += here;
        }
        for (const KeyedRow& row : rows) spare[places[ByteOf(row.key, byte)]++] = row;
        rows.swap(spare);
    }
}

std::uint64_t KeyOf(double number) {
    constexpr std::uint64_t kSign = std::uint64_t{1} << 63;
    const auto bits = std::bit_cast<std::uint64_t>(number + 0.0);
    return bits & kSign ? ~bits : bits | kSign;
}

}  // namespace quillary
