// The categories that a catalogue can be asked for.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "db/Ascii.h"

namespace quillary {

/// In the order in which a person chooses among them.
inline constexpr std::string_view kCatalogueCategories[] = {
    "Any",        "Business", "Career", "Communications", "Computers", "Engineering",   "Entertainment", "Food",
    "History",    "Language", "Law",    "Math",           "Medicine",  "Miscellaneous", "Palm-Related",  "Philosophy",
    "Religion",   "Sports",   "Travel", "Adventure",      "Biography", "Children",      "Horror",        "Humor",
    "Literature", "Mystery",  "Novels", "Poetry",         "Romance",   "Scifi",         "Shakespeare",   "Short",
    "Theater",    "Western",
};

/// As a request names it; empty for the one that stands for all.
[[nodiscard]] inline std::string CategoryToAskFor(std::string_view chosen) {
    std::string category(chosen);
    std::transform(category.begin(), category.end(), category.begin(), AsciiLower);
    return category == "any" ? std::string() : category;
}

}  // namespace quillary
