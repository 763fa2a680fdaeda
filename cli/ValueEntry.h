// From a value as a command line or a table gives it to the stored form of its field's type.
#pragma once

#include <string>
#include <string_view>

#include "db/AnsiText.h"
#include "db/FieldType.h"
#include "db/Messages.h"
#include "db/UserLocale.h"

namespace quillary {

struct EntryRules {
    const AnsiText& page;
    DateOrder order;
    int century;  // of a year of two digits
};

/// What a value that is not there is stored as.
[[nodiscard]] std::string_view EmptyValue(FieldType type);

/// Appends the stored form of `given`, both in the code page. Message::None, or the reason why it cannot be read, with
/// nothing appended.
[[nodiscard]] Message AppendStoredValue(const Field& field, std::string_view given, const EntryRules& rules,
                                        std::string& out);

/// The message for what AppendStoredValue refused.
[[nodiscard]] std::string RefusalText(Message refusal, std::string_view given, const EntryRules& rules);

/// `text` on one line, cut where it is too long for a message.
[[nodiscard]] std::string ForMessage(std::string_view text, const AnsiText& page);

}  // namespace quillary
