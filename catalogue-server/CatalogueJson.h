// catalogue.json: what a person writes about the files beside it. docs/catalogue-server.md tells its form.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace quillary {

inline constexpr const char* kCatalogueJson = "catalogue.json";
inline constexpr std::size_t kLargestCatalogueJson = 64u << 20;

/// UTF-8. A text that is not there is taken from the file itself, or stays empty.
struct PublishedTexts {
    std::optional<std::string> title;
    std::optional<std::string> author;
    std::optional<std::string> category;
    std::optional<std::string> description;
    std::optional<std::string> language;
    std::optional<std::string> updated;
    std::optional<std::string> notes;
    std::optional<std::string> rating;
    std::optional<std::string> downloads;
};

/// By the name of the file.
using FolderTexts = std::unordered_map<std::string, PublishedTexts>;

/// nullopt for what is no JSON of this form; what is wrong in a whole one is left out. `problems` receives a line each,
/// of a few at most.
[[nodiscard]] std::optional<FolderTexts> ParseCatalogueJson(std::string_view bytes, std::vector<std::string>& problems);

}  // namespace quillary
