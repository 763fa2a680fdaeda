// Builds the bytes of a whole database file in memory.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "db/Container.h"
#include "db/FieldType.h"
#include "db/Image.h"
#include "db/Messages.h"
#include "db/QuerySettings.h"
#include "db/RecordBuffer.h"

namespace quillary {

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

/// Builds the image and moves the records of `content` onto it, category bytes included. False, with `content` as it
/// was, when there are too many records or the image would be larger than what is read.
[[nodiscard]] bool EncodeDatabase(DatabaseContent& content, Image& image, Failure& failure);

/// Conditions and keys out of the block, for format version 3 and up; those that name no field are left out.
[[nodiscard]] FilterSettings LoadFilter(const AppInfoBlock& block, const std::vector<Field>& fields);
[[nodiscard]] SortSettings LoadSort(const AppInfoBlock& block, const std::vector<Field>& fields);

}  // namespace quillary
