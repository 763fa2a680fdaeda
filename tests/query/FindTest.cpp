#include "query/Find.h"

#include <gtest/gtest.h>
#include <rapidcheck.h>

#include "db/CellText.h"
#include "platform/posix/CodePages.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

// What else a search finds, and in which column: the last test.
TEST(Find, BeginsWhereItIsTold) {
    MemoryFiles files;
    CQuillaryDoc doc(files);
    doc.NewDatabase("x", {MakeField("Name", "t"), MakeField("Due", "D")});
    Failure failure;
    for (const char* name : {"\xB5", "row %d", "last"})
        ASSERT_TRUE(doc.AppendRecord(Entries({name, "36591"}), failure));
    const std::tuple<std::u16string, std::size_t, std::optional<std::size_t>> kCases[] = {
        {u"a", 2, 2}, {u"", 3, std::nullopt}, {u"\u4F60", 0, std::nullopt}, {u"\u03BC", 0, 0}, {u"row 1", 0, 1}};
    for (const auto& [text, from, row] : kCases) EXPECT_EQ(row, RecordFinder(doc, text, -1).FindFrom(from));
    doc.SetStyle(DateStyle::Long);
    EXPECT_EQ(0u, RecordFinder(doc, u"march 07", -1).FindFrom(0));
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
TEST(Find, TheQuickSearchFindsJustWhatTheCellsShow) {
    // A byte may be half of a character, and a sigma has three forms.
    const auto kana = CodePageByName("shift_jis"), greek = CodePageByName("windows-1253");
    ASSERT_TRUE(kana && greek);
    ::setenv("RC_PARAMS", "max_success=1500", 0);
    EXPECT_TRUE(rc::check([&] {
        const auto text = [](std::size_t most) {
            return rc::gen::resize(
                static_cast<int>(most),
                rc::gen::container<std::string>(rc::gen::weightedOneOf<char>(
                    {{6, rc::gen::element('x', 'X', 'y', '\xE9', '\xC9', '\xB5', '1', '5', '0')},
                     {3, rc::gen::element('\x83', 'A', '\x84', 'G', 'w', '\xF2', '\xF3', '\xD3')},
                     {2, rc::gen::element('%', 'd', 's', 'c', '/', ' ', ':', ',', 't', 'r', 'u', 'e')},
                     {1, rc::gen::element('\n', '\r', '\2', '\x9F', '\xFE')}})));
        };
        MemoryFiles files;
        CQuillaryDoc doc(files, **rc::gen::element(&AnsiText::Windows1252(), &*kana, &*greek));
        doc.NewDatabase("x", {MakeField("a", "t"), MakeField("b", "L"),
                              MakeField("c", *rc::gen::element("D", "d", "B", "P", "F"))});
        if (*rc::gen::arbitrary<bool>()) doc.SetStyle(DateStyle::Long);
        Failure failure;
        const auto rows = *rc::gen::inRange<std::size_t>(1, 150);  // more than one search goes over at once
        for (std::size_t i = 0; i < rows; ++i) {
            RC_ASSERT(doc.AppendRecord(i % 8 == 7 ? Entries({*text(12)})
                                                  : Entries({*text(i % 10 == 0 ? 90 : 12), *text(3),
                                                             *rc::gen::element("", "5551555", "36591", "1", "%d")}),
                                       failure));
        }
        RC_ASSERT(doc.SaveDatabaseAs("/db.pdb", "x", failure));
        // Rows out of the file's order, and records that are not in its image.
        std::vector<std::uint32_t> order(rows);
        for (std::uint32_t k = 0; k < rows; ++k)
            order[k] = k < 70 ? k : static_cast<std::uint32_t>(rows - 1 - (k - 70));
        doc.ReorderRecords(order);
        doc.ReplaceRecord(rows / 2, Entries({*text(9)}));

        const std::string typed = *text(4);
        const int column = *rc::gen::inRange(-1, 3);
        const std::u16string upper = AnsiText::Upper(doc.Page().ToWide(typed));
        if (upper.find(u'\uFFFD') != upper.npos) return;  // no character that anybody types
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
    }));
}

}  // namespace
}  // namespace quillary
