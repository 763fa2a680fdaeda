// A field while its definition is being edited, and what becomes of it in the end.
#pragma once

#include <optional>

#include "admin/ApplySchema.h"

namespace quillary {

struct FieldEdit {
    /// As edited so far. The options of all types are kept, so that another type can be tried.
    FieldDefinition definition;
    bool convert = false;  // whether an order to convert from was chosen
    /// In the database; none for a new field.
    std::optional<Field> former = std::nullopt;
};

/// What to store: a field of the same type and options keeps all that it was read from, another one has the options of
/// its own type alone.
[[nodiscard]] FieldDefinition Settled(const FieldEdit& edit);

}  // namespace quillary
