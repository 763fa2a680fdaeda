// What becomes of a stored value when its field gets another type.
#pragma once

#include <string>
#include <string_view>

#include "db/AnsiText.h"
#include "db/Container.h"
#include "db/FieldType.h"
#include "db/UserLocale.h"

namespace quillary {

struct Conversion {
    FieldType to;
    FieldType from;
    DateOrder order;  // of the numbers in a text that becomes a date
    int century;      // where a year below 100 goes: 2000 for 2026
    DateStyle style;  // of a date that becomes a text
};

enum class Converted {
    Kept,
    Emptied,    // there was a value, and none of the new type can be made of it
    Unchecked,  // neither yes nor no: a check box that it comes into or out of makes it a no
};

/// Whether every value stays byte for byte what it is, and nothing more is to be told of it.
[[nodiscard]] bool KeepsEveryValue(FieldType to, FieldType from);

/// Appends the new stored text for `stored`.
Converted AppendConverted(const Conversion& conversion, std::string_view stored, const AnsiText& page,
                          std::string& out);

}  // namespace quillary
