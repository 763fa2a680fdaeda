// From records to contacts: the item that a record becomes.
#pragma once

#include <array>
#include <cstddef>

#include "db/QuillaryDoc.h"
#include "integration/Contact.h"
#include "integration/RecordValues.h"

namespace quillary {

/// The position of the field for each ContactProperty; -1 is none.
using ContactFields = std::array<int, kContactProperties>;

[[nodiscard]] constexpr ContactFields NoContactFields() {
    ContactFields fields{};
    fields.fill(-1);
    return fields;
}

/// Rows count from 0 among the shown records.
[[nodiscard]] Contact MakeContact(const CQuillaryDoc& doc, std::size_t row, const ContactFields& fields,
                                  const DateHabits& habits);

}  // namespace quillary
