// Whether a file belongs into the list of databases, found out from a few reads of a file that may be anything.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>

namespace quillary {

/// Reads up to `size` bytes at `offset` into `to`; answers how many there were, 0 when the file cannot be read there.
using ReadPart = std::function<std::size_t(std::uint64_t offset, char* to, std::size_t size)>;

/// True for a database that would open: version 0, a FieldLabels, a DataType and a FieldLengths record in the list, and
/// a first field with a name. Reads the header, the record list and the beginning of the FieldLabels record alone.
[[nodiscard]] bool IsListedDatabase(const ReadPart& read, std::uint64_t fileSize);

}  // namespace quillary
