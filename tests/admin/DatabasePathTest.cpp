#include "admin/DatabasePath.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

struct Handheld : StorageLocations {
    std::vector<std::string> cards;
    std::string MainFolder() const override { return "\\My Documents\\"; }
    std::vector<std::string> CardFolders() const override { return cards; }
};

struct OneSetting : Settings {
    std::int32_t location = 0;
    std::int32_t ReadInt(std::string_view name, std::int32_t fallback) const override {
        return name == kLocationNdx ? location : fallback;
    }
    std::string ReadText(std::string_view, std::string_view fallback) const override { return std::string(fallback); }
    bool WriteInt(std::string_view, std::int32_t) override { return false; }
    bool WriteText(std::string_view, std::string_view) override { return false; }
};

TEST(DatabasePath, NamesAndLocations) {
    struct Case {
        const char* name;
        int cards;
        int location;
        const char* path;
    };
    const Case kCases[] = {
        {"Tea", 0, 0, "\\My Documents\\Tea.pdb"},
        {"Tea", 2, 0, "\\My Documents\\Tea.pdb"},
        {"Tea", 2, 2, "\\Card 2\\Tea.pdb"},
        {"Tea", 0, 1, "\\My Documents\\Tea.pdb"},
        {"Tea", 1, 2, "\\My Documents\\Tea.pdb"},
        {"Tea.PdB", 1, 1, "\\Card 1\\Tea.PdB"},
        {"Tea.pd", 0, 0, "\\My Documents\\Tea.pd.pdb"},
        {"b", 0, -1, "\\My Documents\\b.pdb"},
    };
    for (const auto& c : kCases) {
        Handheld locations;
        for (int k = 1; k <= c.cards; ++k) locations.cards.push_back("\\Card " + std::to_string(k) + "\\");
        OneSetting settings;
        settings.location = c.location;
        Failure failure;
        EXPECT_EQ(c.path, BuildDatabasePath(c.name, locations, settings, failure));
    }
    for (const char* impossible : {"", ".", "..", "a/b", "..\\x", "a\nb", "a\xC2\x85"}) {
        Failure failure;
        EXPECT_FALSE(BuildDatabasePath(impossible, Handheld(), OneSetting(), failure)) << impossible;
        EXPECT_FALSE(failure.text.empty());
    }
}

}  // namespace
}  // namespace quillary
