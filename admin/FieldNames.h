// What a person may type as the name of a field or an item of a list, and the form in which a file keeps it.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "db/AnsiText.h"
#include "db/Messages.h"

namespace quillary {

/// In the code page of `page`, blanks at the ends included. Refuses a blank name, control characters, and characters
/// that cannot be stored.
[[nodiscard]] std::optional<std::string> StoredFieldName(std::u16string_view typed, const AnsiText& page,
                                                         Failure& failure);

/// An item may be empty. Refuses ";", control characters, and characters that cannot be stored.
[[nodiscard]] std::optional<std::string> StoredListItem(std::u16string_view typed, const AnsiText& page,
                                                        Failure& failure);

}  // namespace quillary
