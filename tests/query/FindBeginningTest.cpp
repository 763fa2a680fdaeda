#include "query/FindBeginning.h"

#include <gtest/gtest.h>

#include "platform/posix/CodePages.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

TEST(FindBeginning, LooksAtTheFirstCellFromARowOnAndThenFromTheTop) {
    const std::tuple<const char*, std::u16string_view, std::size_t, std::optional<std::size_t>> kCases[] = {
        {"the row itself", u"a", 0, 0},
        {"the next one", u"AD", 1, 3},
        {"from the top again", u"ada", 4, 0},
        {"behind the last row", u"ada", 5, 0},
        {"not in the second line, the middle or another column", u"b", 0, {}},
        {"case as Find has it", u"\u0416A", 0, 1},
        {"a cell as it is shown", u"2 O", 0, 2},
        {"what no cell can hold", u"\u0E01", 0, {}},
    };
    // One byte a character, and two.
    for (const auto& [code, zhe] : {std::pair("windows-1251", "\xE6\x61"), std::pair("shift_jis", "\x84\x77\x61")}) {
        const auto page = CodePageByName(code);
        ASSERT_TRUE(page);
        MemoryFiles files;
        CQuillaryDoc doc(files, *page);
        doc.NewDatabase("x", {MakeField("A", "t"), MakeField("B", "t")});
        EXPECT_FALSE(FindBeginning(doc, u"a", 0)) << "no record";
        Failure failure;
        for (const char* text : {"Adab", zhe, "%d of", "adam\nbob"}) {
            ASSERT_TRUE(doc.AppendRecord(Entries({text, "bob"}), failure));
        }
        ASSERT_TRUE(doc.AppendRecord("", failure));  // without any entry
        for (const auto& [name, text, from, row] : kCases)
            EXPECT_EQ(row, FindBeginning(doc, text, from)) << code << ": " << name;
    }
}

}  // namespace
}  // namespace quillary
