#include "query/Find.h"

#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "db/CellText.h"
#include "platform/posix/CodePages.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

TEST(Find, SearchesWhatTheCellsShow) {
    MemoryFiles files;
    CQuillaryDoc doc(files);
    doc.NewDatabase("x", {MakeField("Name", "t"), MakeField("Due", "D"), MakeField("Done", "B"), MakeField("Tel", "P"),
                          MakeField("At", "d")});
    Failure failure;
    ASSERT_TRUE(doc.AppendRecord(Entries({"M\xFCller\nsecond line", "36591", "JA", "5551234", "43200"}), failure));
    ASSERT_TRUE(doc.AppendRecord(Entries({"row %d of \xB5", "", "", "x", ""}), failure));
    ASSERT_TRUE(doc.AppendRecord(Entries({"last %3d"}), failure));
    struct Case {
        const char* name;
        std::u16string text;
        int column;
        std::size_t from;
        std::optional<std::size_t> row;
        DateStyle style = DateStyle::Numeric;
    };
    const Case kCases[] = {
        {"any case", u"M\u00DCLL", -1, 0, 0},
        {"only the first line", u"second", -1, 0, std::nullopt},
        {"a date as it shows", u"03/07", -1, 0, 0},
        {"not as it is stored", u"36591", -1, 0, std::nullopt},
        {"a date with its month's name", u"march 07", -1, 0, 0, DateStyle::Long},
        {"which then is no number", u"03/07", -1, 0, std::nullopt, DateStyle::Long},
        {"nor a name in numbers", u"march", -1, 0, std::nullopt},
        {"a time as it shows", u"12:00 PM", -1, 0, 0},
        {"not its seconds", u"43200", -1, 0, std::nullopt},
        {"the words of empty values", u"no date", -1, 0, 1},
        {"of an empty time", u"no time", 4, 0, 1},
        {"a check box", u"TRUE", 2, 0, 0},
        {"a phone as it shows", u"555-1", 3, 0, 0},
        {"a directive is the row", u"row 1", -1, 0, 1},
        {"at the very end too", u"last   2", -1, 0, 2},
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
    for (const auto& c : kCases) {
        doc.SetStyle(c.style);
        EXPECT_EQ(c.row, RecordFinder(doc, c.text, c.column).FindFrom(c.from)) << c.name;
    }
}

TEST(Find, ReadsPagesOfSeveralBytesByCharacter) {
    const auto page = CodePageByName("shift_jis");
    ASSERT_TRUE(page);
    MemoryFiles files;
    CQuillaryDoc doc(files, *page);
    doc.NewDatabase("x", {MakeField("Name", "t"), MakeField("Due", "D")});
    Failure failure;
    ASSERT_TRUE(doc.AppendRecord(Entries({"\x83\x41", "36591"}), failure));  // the second byte is that of an "A"
    ASSERT_TRUE(doc.AppendRecord(Entries({"Kana \x83\x41%d \x84\x47", ""}), failure));
    struct Case {
        const char* name;
        std::u16string text;
        std::optional<std::size_t> row;
    };
    const Case kCases[] = {
        {"half a character is none", u"kA", 1}, {"a whole one", u"\u30A2", 0},
        {"case of Cyrillic", u"\u0436", 1},     {"behind a directive", u"\u30A21", 1},
        {"a date as it shows", u"/07", 0},      {"nothing", u"A\u30A2", std::nullopt},
    };
    for (const auto& c : kCases) {
        EXPECT_EQ(c.row, RecordFinder(doc, c.text, RecordFinder::kAllFields).FindFrom(0)) << c.name;
    }
    EXPECT_EQ(1u, RecordFinder(doc, u"a", 0).FindFrom(0)) << "the record before holds its byte";
}

bool ShowsText(const CQuillaryDoc& doc, std::size_t row, std::size_t field, const std::u16string& upper) {
    const auto stored = FindEntry(doc.Shown()[row].Entries(), static_cast<std::uint8_t>(field));
    if (!stored) return false;
    std::string display, cell;
    doc.AppendDisplay(*stored, field, display);
    AppendCellText(display, row, cell);
    return AnsiText::Upper(doc.Page().ToWide(cell)).find(upper) != upper.npos;
}

// The search looks at raw bytes first, over many records at once; the rule itself looks at cells.
RC_GTEST_PROP(Find, TheQuickSearchFindsJustWhatTheCellsShow, ()) {
    const auto text = [](std::size_t most) {
        return rc::gen::resize(static_cast<int>(most),
                               rc::gen::container<std::string>(rc::gen::weightedOneOf<char>(
                                   {{6, rc::gen::element('x', 'X', 'y', '\xE9', '\xC9', '\xB5', '1', '5', '0')},
                                    {2, rc::gen::element('%', 'd', 's', 'c', '/', ' ', ':', 't', 'r', 'u', 'e')},
                                    {1, rc::gen::element('\n', '\r', '\2', '\x9F', '\xFE')}})));
    };
    MemoryFiles files;
    ScriptedQuestions questions;
    CQuillaryDoc doc(files);
    doc.NewDatabase(
        "x", {MakeField("a", "t"), MakeField("b", "L"), MakeField("c", *rc::gen::element("D", "d", "B", "P", "F"))});
    if (*rc::gen::arbitrary<bool>()) doc.SetStyle(DateStyle::Long);
    Failure failure;
    const auto rows = *rc::gen::inRange<std::size_t>(1, 150);  // more than one search goes over at once
    for (std::size_t i = 0; i < rows; ++i) {
        RC_ASSERT(doc.AppendRecord(
            Entries({*text(i % 10 == 0 ? 90 : 12), *text(3), *rc::gen::element("", "5551555", "36591", "1", "%d")}),
            failure));
    }
    RC_ASSERT(doc.SaveDatabaseAs("/db.pdb", "x", failure));
    // Rows out of the file's order, and records that are not in its image.
    std::vector<std::uint32_t> order(rows);
    for (std::uint32_t k = 0; k < rows; ++k) order[k] = k < 70 ? k : static_cast<std::uint32_t>(rows - 1 - (k - 70));
    doc.ReorderRecords(order);
    doc.ReplaceRecord(rows / 2, Entries({*text(9)}));

    const std::string typed = *text(4);
    const int column = *rc::gen::inRange(-1, 3);
    const std::u16string upper = AnsiText::Upper(doc.Page().ToWide(typed));
    RecordFinder finder(doc, doc.Page().ToWide(typed), column);
    std::vector<std::size_t> found, shown;
    for (auto row = finder.FindFrom(0); row; row = finder.FindFrom(*row + 1)) found.push_back(*row);
    for (std::size_t row = 0; row < rows; ++row) {
        bool any = upper.empty();
        for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
            any = any || ((column < 0 || column == static_cast<int>(k)) && ShowsText(doc, row, k, upper));
        }
        if (any) shown.push_back(row);
    }
    RC_ASSERT(found == shown);
}

}  // namespace
}  // namespace quillary
