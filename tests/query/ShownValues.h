// Dates and times read back from what a person sees, for tests that follow the rules word by word.
#pragma once

#include <array>
#include <cstdio>
#include <string>

#include "db/FieldType.h"

namespace quillary {

using Moment = std::array<int, 3>;  // comparable as it stands; no first number: unreadable

inline Moment ReadShown(FieldType type, const std::string& text) {
    int a = 0, b = 0, year = 0;
    char half = 0;
    if (type == FieldType::Date) {
        return std::sscanf(text.c_str(), "%d/%d/%d", &a, &b, &year) == 3 ? Moment{year, a, b} : Moment{};
    }
    const bool isTime = std::sscanf(text.c_str(), "%d:%d %cm", &a, &b, &half) == 3;
    return isTime ? Moment{1990, a % 12 + (half == 'p' ? 12 : 0), b} : Moment{};
}

}  // namespace quillary
