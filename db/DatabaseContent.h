// What a database file holds, in the form that the document works with.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "db/Container.h"
#include "db/FieldType.h"
#include "db/QuerySettings.h"
#include "db/RecordBuffer.h"

namespace quillary {

class CDatabaseReader;

/// Everything that a file holds. The records' bytes live elsewhere.
struct DatabaseContent {
    DatabaseHeader header;
    AppInfoBlock appInfo;
    std::vector<Field> fields;
    std::string infoText;           // in the file's code page
    std::int32_t infoLockHash = 0;  // 0 = the text is not locked
    FilterSettings filter;
    SortSettings sort;
    std::vector<RecordRef> shown;
    std::vector<RecordRef> hidden;
};

/// Of a file whose schema has been read. The records lie in the reader's image.
[[nodiscard]] DatabaseContent ContentOf(CDatabaseReader& reader);

}  // namespace quillary
