#include "admin/DatabasePath.h"

#include <gtest/gtest.h>

#include "tests/fakes/TestLocations.h"
#include "tests/fakes/TestSettings.h"

namespace quillary {
namespace {

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
        const TestLocations locations = Handheld(c.cards);
        TestSettings settings;
        settings.numbers["LocationNdx"] = c.location;
        Failure failure;
        EXPECT_EQ(c.path, BuildDatabasePath(c.name, locations, settings, failure));
    }
    for (const char* impossible : {"", ".", "..", "a/b", "..\\x", "a\nb", "a\xC2\x85"}) {
        Failure failure;
        EXPECT_FALSE(BuildDatabasePath(impossible, Handheld(0), TestSettings(), failure)) << impossible;
        EXPECT_FALSE(failure.text.empty());
    }
}

}  // namespace
}  // namespace quillary
