// The filter conditions and sort keys that a database keeps. Fields are named, never numbered, while a database is
// open, so that moving a field changes nothing and renaming it silently disables what named it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace quillary {

struct FilterCondition {
    bool allFields = false;
    std::string field;           // in the file's code page; empty for All Fields
    std::uint8_t operation = 0;  // index into the operators of the field's type
    std::string value;           // encoded by type; at most 40 bytes

    bool operator==(const FilterCondition&) const = default;
};

struct FilterSettings {
    std::vector<FilterCondition> conditions;  // at most 3
    bool matchAny = false;                    // "or (match any)"
    bool onlyShown = false;                   // apply mode "Filtered records"; not stored in the file

    bool operator==(const FilterSettings&) const = default;
};

struct SortKey {
    std::string field;  // in the file's code page
    bool descending = false;

    bool operator==(const SortKey&) const = default;
};

using SortSettings = std::vector<SortKey>;  // at most 3

}  // namespace quillary
