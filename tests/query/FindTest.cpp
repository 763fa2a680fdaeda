#include "query/Find.h"

#include <gtest/gtest.h>

#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

TEST(Find, SearchesWhatTheCellsShow) {
    MemoryFiles files;
    CQuillaryDoc doc(files);
    doc.NewDatabase("x",
                    {MakeField("Name", "t"), MakeField("Due", "D"), MakeField("Done", "B"), MakeField("Tel", "P")});
    Failure failure;
    ASSERT_TRUE(doc.AppendRecord(Entries({"M\xFCller\nsecond line", "36591", "JA", "5551234"}), failure));
    ASSERT_TRUE(doc.AppendRecord(Entries({"row %d of \xB5", "", "", "x"}), failure));
    ASSERT_TRUE(doc.AppendRecord(Entries({"last"}), failure));
    struct Case {
        const char* name;
        std::u16string text;
        int column;
        std::size_t from;
        std::optional<std::size_t> row;
    };
    const Case kCases[] = {
        {"any case", u"M\u00DCLL", -1, 0, 0},
        {"only the first line", u"second", -1, 0, std::nullopt},
        {"a date as it shows", u"03/07", -1, 0, 0},
        {"not as it is stored", u"36591", -1, 0, std::nullopt},
        {"the words of empty values", u"no date", -1, 0, 1},
        {"a check box", u"TRUE", 2, 0, 0},
        {"a phone as it shows", u"555-1", 3, 0, 0},
        {"a directive is the row", u"row 1", -1, 0, 1},
        {"a Greek mu finds a micro sign", u"\u03BC", -1, 0, 1},
        {"one column", u"true", 0, 0, std::nullopt},
        {"from a row on", u"a", -1, 1, 1},
        {"the row itself counts", u"last", -1, 2, 2},
        {"an empty text is found everywhere", u"", 1, 2, 2},
        {"also where no entry is", u"", 3, 2, 2},
        {"beyond the end", u"", -1, 3, std::nullopt},
        {"a missing entry shows nothing", u"no date", 1, 2, std::nullopt},
        {"a character that the page lacks", u"\u4F60", -1, 0, std::nullopt},
    };
    for (const auto& c : kCases) EXPECT_EQ(c.row, RecordFinder(doc, c.text, c.column).FindFrom(c.from)) << c.name;
}

}  // namespace
}  // namespace quillary
