// Reads the schema that `qly fields FILE SCHEMA.json` applies, in the form that `qly fields FILE` prints.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "admin/ApplySchema.h"

namespace quillary {

/// The definitions for the fields of `doc`, or nullopt with a message. A name or list that reads as the old one keeps
/// its bytes, whatever they are.
[[nodiscard]] std::optional<std::vector<FieldDefinition>> ReadSchema(std::string_view json, const CQuillaryDoc& doc,
                                                                     std::string& error);

}  // namespace quillary
