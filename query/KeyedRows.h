// Rows with a number each, and their order by it: a radix sort, which compares nothing.
#pragma once

#include <cstdint>
#include <vector>

namespace quillary {

struct KeyedRow {
    std::uint64_t key;
    std::uint32_t row;
};

/// Ascending by key; rows with the same one stay in their order. `spare` is memory that calls can share.
void SortByKey(std::vector<KeyedRow>& rows, std::vector<KeyedRow>& spare);

/// A key for `number`, in the order of the numbers; both zeros have the same. Not for NaN.
[[nodiscard]] std::uint64_t KeyOf(double number);

}  // namespace quillary
