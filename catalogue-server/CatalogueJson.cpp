#include "catalogue-server/CatalogueJson.h"

#include <cmath>
#include <cstdint>
#include <nlohmann/json.hpp>

#include "catalogue-server/Texts.h"

namespace quillary {

namespace {

using Json = nlohmann::json;

constexpr std::size_t kMostProblems = 5;
constexpr std::size_t kLongestText = 32u << 10;
constexpr double kBestRating = 5;
constexpr std::uint64_t kMostDownloads = 1'000'000'000;

struct TextKey {
    const char* name;
    std::optional<std::string> PublishedTexts::*text;
};
constexpr TextKey kTextKeys[] = {
    {"title", &PublishedTexts::title},       {"author", &PublishedTexts::author},
    {"category", &PublishedTexts::category}, {"description", &PublishedTexts::description},
    {"language", &PublishedTexts::language}, {"updated", &PublishedTexts::updated},
    {"notes", &PublishedTexts::notes},
};

void Report(std::vector<std::string>& problems, const std::string& name, const std::string& problem) {
    // The name is a stranger's: only what is printable goes to a terminal.
    if (problems.size() < kMostProblems) problems.push_back("\"" + PercentEncoded(name) + "\" " + problem);
}

// False for a key that is none.
bool ReadText(const std::string& key, const Json& value, PublishedTexts& texts, std::string& problem) {
    for (const TextKey& known : kTextKeys) {
        if (key != known.name) continue;
        const auto* text = value.get_ptr<const std::string*>();
        if (!text || text->size() > kLongestText) {
            problem = "must be a text of at most 32 KB";
        } else {
            texts.*known.text = *text;
        }
        return true;
    }
    return false;
}

bool ReadNumber(const std::string& key, const Json& value, PublishedTexts& texts, std::string& problem) {
    if (key == "rating") {
        const double rating = value.is_number() ? value.get<double>() : -1;
        if (rating >= 0 && rating <= kBestRating) {
            // In tenths, so that the text has a point under every locale.
            const long tenths = std::lround(rating * 10);
            texts.rating = std::to_string(tenths / 10) + "." + std::to_string(tenths % 10);
        } else {
            problem = "must be a number from 0 to 5";
        }
        return true;
    }
    if (key != "downloads") return false;
    if (value.is_number_unsigned() && value.get<std::uint64_t>() <= kMostDownloads) {
        texts.downloads = std::to_string(value.get<std::uint64_t>());
    } else {
        problem = "must be a whole number";
    }
    return true;
}

PublishedTexts ReadTexts(const std::string& file, const Json& values, std::vector<std::string>& problems) {
    PublishedTexts texts;
    for (const auto& [key, value] : values.items()) {
        std::string problem;
        if (!ReadText(key, value, texts, problem) && !ReadNumber(key, value, texts, problem)) problem = "is not known";
        if (!problem.empty()) Report(problems, file, "- \"" + PercentEncoded(key) + "\" " + problem);
    }
    return texts;
}

}  // namespace

std::optional<FolderTexts> ParseCatalogueJson(std::string_view bytes, std::vector<std::string>& problems) {
    const Json document = Json::parse(bytes.begin(), bytes.end(), nullptr, false);
    const auto files = document.is_object() ? document.find("files") : document.end();
    if (!document.is_object() || files == document.end() || !files->is_object()) {
        problems.emplace_back("it is no JSON object with an object \"files\"");
        return std::nullopt;
    }
    FolderTexts texts;
    for (const auto& [name, values] : files->items()) {
        if (values.is_object()) {
            texts.emplace(name, ReadTexts(name, values, problems));
        } else {
            Report(problems, name, "must be an object");
        }
    }
    return texts;
}

}  // namespace quillary
