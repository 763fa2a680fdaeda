// The order of the records by up to three keys.
#pragma once

#include <cstdint>
#include <vector>

#include "db/QuillaryDoc.h"

namespace quillary {

/// The rows of the shown records in sorted order, stable. Keys that name no field, and keys on Phone, E-Mail and Web
/// URL fields, count as equal; with no key the order is the present one.
[[nodiscard]] std::vector<std::uint32_t> SortedOrder(const CQuillaryDoc& doc);

/// Rearranges the shown records by the stored keys.
void SortRecords(CQuillaryDoc& doc);

}  // namespace quillary
