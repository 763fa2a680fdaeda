#include "db/RecordBuffer.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <rapidcheck/gtest.h>

#include "db/RecordArena.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {
namespace {

using std::string_literals::operator""s;

TEST(RecordBuffer, EndMarks) {
    EXPECT_EQ(FromHex("0000 41 0001"), EntriesOf(FromHex("0000 41 0001 00FF 0002")));
    EXPECT_EQ(FromHex("0000 41"), EntriesOf(FromHex("0000 41"))) << "none";
    EXPECT_EQ(FromHex("0000 41"), EntriesOf(FromHex("0000 41 FF"))) << "its zero is missing: the text is whole";
    EXPECT_EQ("", EntriesOf(FromHex("00FF")));
    EXPECT_EQ("", EntriesOf(""));
    EXPECT_EQ(FromHex("0000"), EntriesOf(FromHex("0000 00FF"))) << "an empty entry";
}

TEST(RecordBuffer, LookupScansForTheByte) {
    const std::string twelve = Entries({"a", "b", "c", "d", "e", "f", "g", "h", "i", "j", "k", "l"});
    const std::tuple<const char*, std::string, std::uint8_t, std::optional<std::string>> kCases[] = {
        {"first", Entries({"Ann", "Bob"}), 0, "Ann"},
        {"last", Entries({"Ann", "Bob"}), 1, "Bob"},
        {"empty", Entries({"", "Bob"}), 0, ""},
        {"missing", Entries({"Ann"}), 1, std::nullopt},
        {"tenth", twelve, 10, "k"},
        {"a line feed is found as entry 10", Entries({"x\ny", "", "", "", "", "", "", "", "", "", "k"}), 10, "y"},
        {"a tab hides nothing before entry 9", Entries({"x", "p\tq"}), 1, "p\tq"},
        {"no entries", "", 0, std::nullopt},
        {"a lone zero", FromHex("00"), 0, std::nullopt},
        {"entry 0 is missing: the next number's high byte is taken", FromHex("0001 41 0002 42"), 0, "\2B"},
        {"entry 0 is missing before the end mark", FromHex("0001 41"), 0, std::nullopt},
    };
    for (const auto& [name, entries, number, text] : kCases) {
        const auto found = FindEntry(entries, number);
        EXPECT_EQ(text, found ? std::optional<std::string>(*found) : std::nullopt) << name;
    }
}

RC_GTEST_PROP(RecordBuffer, OnePassFindsWhatTwentyScansFind, ()) {
    // Small bytes on purpose: they are what the scan stumbles over; and their likes above 0x80, which differ in the
    // high bit alone.
    const auto bytes = *rc::gen::container<std::string>(rc::gen::weightedOneOf<char>(
        {{3, rc::gen::inRange<char>(0, 24)},
         {3, rc::gen::map(rc::gen::inRange(0x80, 0xFF), [](int b) { return static_cast<char>(b); })},
         {3, rc::gen::inRange<char>('a', 'z')}}));
    const std::string_view entries = EntriesOf(bytes);
    const auto fieldCount = *rc::gen::inRange<std::size_t>(0, 21);
    EntryTable table;
    table.Fill(entries, fieldCount);
    for (std::size_t k = 0; k < fieldCount; ++k) {
        const auto found = FindEntry(entries, static_cast<std::uint8_t>(k));
        RC_ASSERT(found.has_value() == table.Has(k));
        RC_ASSERT(found.value_or("") == table.Text(k));
    }
}

TEST(RecordBuffer, RewritingKeepsEveryOtherEntry) {
    std::vector<std::string> hidden(12, "x");
    hidden[3] = "line\nfeed";
    std::vector<std::string> hiddenAfter = hidden;
    hiddenAfter[11] = "new";
    const std::string more(600, '\0');  // entries than any table has
    const std::tuple<const char*, std::string, Entry, std::string> kCases[] = {
        {"replaced", Entries({"Ann", "Bob"}), {0, "Eve"}, Entries({"Eve", "Bob"})},
        {"added at the end", Entries({"Ann"}), {1, "Bob"}, Entries({"Ann", "Bob"})},
        {"added in its place", FromHex("0000 41 0002 43"), {1, "B"}, FromHex("0000 41 0001 42 0002 43")},
        {"an entry beyond the last field stays", FromHex("0000 41 0013 5A"), {0, "B"}, FromHex("0000 42 0013 5A")},
        {"entries that the scan misreads stay", Entries(hidden), {11, "new"}, Entries(hiddenAfter)},
        {"into nothing", "", {1, "B"}, FromHex("0001 42")},
        {"more than any table has", Entries({"a", "b"}) + more, {1, "new"}, Entries({"a", "new"}) + more},
        {"no walk: taken apart by the scan", FromHex("41 00 42 00 01 43"), {1, "D"}, FromHex("0000 42 0001 44")},
        {"a text that ends without its number", FromHex("0000 41 00"), {0, "B"}, FromHex("0000 42")},
    };
    for (const auto& [name, before, change, after] : kCases) {
        EXPECT_EQ(after, RewriteEntries(before, std::array{change}, 3)) << name;
    }
}

TEST(RecordBuffer, ARecordThatWouldNeedManyTimesItsSizeIsNotTakenApart) {
    const std::string nuls(100'000, '\0');
    const Entry change{0, "new"};
    EXPECT_EQ(WalkEntries(nuls)->size(), kMaxEntries + 1);
    EXPECT_TRUE(RewriteEntries(nuls, std::array{change}, 3) == Entries({"new"}) + nuls.substr(2));
    // Not to be walked, and each text goes on to the end.
    const std::string nested = FromHex("41 01 02 03 04 05") + std::string(2'000'000, 'x');
    EXPECT_FALSE(RewriteEntries(nested, std::array{change}, 6));
    EXPECT_TRUE(RewriteEntries(nested, std::array{change}, 3));
}

TEST(RecordBuffer, TextsThatWouldHideALaterField) {
    EXPECT_EQ(10u, FieldHiddenBy("a\nb", 3, 12)->field);
    EXPECT_EQ(13u, FieldHiddenBy("a\r\n", 11, 14)->field) << "field 10 stands before it and is safe";
    EXPECT_FALSE(FieldHiddenBy("a\nb", 10, 12)) << "its own number is found at its own place";
    EXPECT_FALSE(FieldHiddenBy("a\nb", 3, 10));
    EXPECT_FALSE(FieldHiddenBy("\x80\xFE plain", 0, 20));
    EXPECT_EQ('\1', FieldHiddenBy("\1", 0, 2)->byte);
}

TEST(RecordArena, RecordsStayWhereTheyAre) {
    RecordArena arena;
    std::vector<std::pair<const char*, std::string>> stored;
    for (std::size_t i = 0; i < 3000; ++i) {
        const std::string text(i % 7 == 0 ? i * 40 : i % 97, static_cast<char>('a' + i % 26));
        stored.emplace_back(arena.Store(text), text);
    }
    for (const auto& [at, text] : stored) ASSERT_EQ(text, std::string_view(at, text.size()));
}

}  // namespace
}  // namespace quillary
