// What a database is, apart from its records, as JSON: for `qly info --json` and `qly fields`.
#pragma once

#include <string>
#include <string_view>

#include "db/QuillaryDoc.h"

namespace quillary {

/// The document's settings and fields, as the info command prints them.
[[nodiscard]] std::string InfoAsJson(const CQuillaryDoc& doc);

/// The schema: a list of fields, each with its position, so that applying it as it is changes nothing.
[[nodiscard]] std::string FieldsAsJson(const CQuillaryDoc& doc);

/// The text of a condition's operator; empty for a code that the field's type lacks.
[[nodiscard]] std::string_view OperatorText(const CQuillaryDoc& doc, const FilterCondition& condition);

}  // namespace quillary
