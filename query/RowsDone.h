// How far a query over all records has come.
#pragma once

#include <cstddef>
#include <functional>

namespace quillary {

/// Is given the number of records that are done, now and then, by one thread at a time.
using RowsDone = std::function<void(std::size_t rows)>;
inline constexpr std::size_t kRowsATurn = 256;

}  // namespace quillary
