// What of a database image would not come back if it were read and written, so that a save can ask before it gets lost.
#pragma once

#include <cstddef>
#include <string_view>

#include "db/Container.h"
#include "db/RecordList.h"

namespace quillary {

/// Whether a record, whose entries are `entries`, has no header or end mark, or more behind that than zeros that fill
/// up.
[[nodiscard]] bool IsRecordDamaged(const RecordList& records, std::size_t index, std::string_view entries);

/// Whether what a schema record says up to entry `last` is what a save would write, and nothing but `filler` (an
/// upper-case text, in either case) stands from entry `firstFiller` on.
[[nodiscard]] bool ComesBack(const RecordList& records, std::size_t schemaRecord, std::size_t last,
                             std::size_t firstFiller, std::string_view filler);

/// Whether the application-info block's place is outside the file, taken, not told though there is room for it, or
/// another than where its first category stands.
[[nodiscard]] bool IsAppInfoElsewhere(const RecordList& records, const DatabaseHeader& header,
                                      const AppInfoBlock& appInfo);

}  // namespace quillary
