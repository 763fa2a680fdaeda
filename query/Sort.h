// The order of the records by up to three keys.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "db/QuillaryDoc.h"
#include "query/RowsDone.h"

namespace quillary {

/// The stored keys without those whose field has been renamed or removed since.
[[nodiscard]] SortSettings KeysInUse(const CQuillaryDoc& doc);

/// How the shown records at the rows `a` and `b` stand to each other under the stored keys: -1, 0 or 1. Keys that name
/// no field, and keys on Phone, E-Mail and Web URL fields, find them equal.
[[nodiscard]] int CompareRecords(const CQuillaryDoc& doc, std::size_t a, std::size_t b);

/// The rows of the shown records in sorted order, stable: by CompareRecords, but with what it compares found
/// once for each record. With no key the order is the present one.
[[nodiscard]] std::vector<std::uint32_t> SortedOrder(const CQuillaryDoc& doc, const RowsDone& done = {});

/// Rearranges the shown records by the stored keys.
void SortRecords(CQuillaryDoc& doc, const RowsDone& done = {});

}  // namespace quillary
