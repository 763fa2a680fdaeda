// Changes one thing in a database image at the place where the reader looks for it, so that the fuzzer gets past the
// header.
#pragma once

#include <cstddef>
#include <cstdint>

namespace quillary {

/// Edits the image in `data` in place (it may grow to `maxSize`); returns the new size.
std::size_t MutateImage(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed);

}  // namespace quillary
