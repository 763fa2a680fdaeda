#include "cli/Check.h"

#include <functional>

#include "tests/cli/Qly.h"

namespace quillary {
namespace {

ImageParts Clean() {
    ImageParts parts;
    parts.AddSchema({"Name", "K", "S"}, {"t", "Lx;y", "I1;1"}, {"80", "120", "0"}, "info", "-5");
    parts.Add(2, {"Ann", "x", "1"});
    parts.Add(3, {"Bob"});
    return parts;
}

// Where things stand in the image of Clean(): six records.
constexpr std::size_t kList = 78;
constexpr std::size_t kBlock = kList + 6 * 8 + 2;
constexpr std::size_t kRow = kList + 4 * 8;
constexpr std::size_t kDataType = kBlock + 428;

std::string Patched(std::size_t at, const std::string& bytes) {
    std::string image = Clean().Build();
    return image.replace(at, bytes.size(), bytes);
}

using Texts = std::vector<std::string>;

std::string WithSchema(const Texts& names, const Texts& types, const Texts& widths, const std::string& info = {},
                       const std::string& lock = "0") {
    ImageParts parts;
    parts.AddSchema(names, types, widths, info, lock);
    return parts.Build();
}

std::string WithRecord(const std::string& bytes, std::uint8_t attributes = 2) {
    ImageParts parts;
    parts.AddSchema({"A", "B", "C"}, {"t", "t", "t"}, {"1", "2", "3"});
    parts.records.push_back({attributes, bytes});
    return parts.Build();
}

std::string WithEntries(const std::string& hex) { return WithRecord(FromHex("FF FF FF 01 FF 00" + hex + "00 FF")); }

std::string Changed(const std::function<void(ImageParts&)>& change) {
    ImageParts parts = Clean();
    change(parts);
    return parts.Build();
}

const std::string kNoKeys = "FF000000 FF000000 FF000000";
const std::string kText40(40, 'x');
const std::string kNoText(40, '\0');

std::string WithTail(const std::string& conditions, const std::string& keys = kNoKeys) {
    return Changed([&](ImageParts& parts) {
        parts.tail = conditions + std::string(126 - conditions.size(), '\0') + FromHex(keys);
    });
}

std::string Renumbered() {
    std::string image = Clean().Build();
    for (std::size_t at = kList + 7; at < kBlock - 2; at += 8) image[at] = 9;
    return image;
}

std::string Without(std::ptrdiff_t record) {
    return Changed([=](ImageParts& parts) { parts.records.erase(parts.records.begin() + record); });
}

std::string With(std::uint8_t attributes) {
    return Changed([=](ImageParts& parts) { parts.Add(attributes, {"x"}); });
}

std::string Swapped(std::size_t a, std::size_t b) {
    return Changed([=](ImageParts& parts) { std::swap(parts.records[a], parts.records[b]); });
}

std::string WithoutBlock(std::size_t gap) {
    ImageParts parts = Clean();
    parts.hasAppInfo = false;
    std::string image = parts.Build();
    for (std::size_t at = kList; at < kBlock - 2; at += 8) image[at + 3] += static_cast<char>(gap - 2);
    return image.replace(kBlock - 2, 2, gap, '\0');
}

std::vector<Departure> Found(std::string_view image) {
    std::vector<Departure> found;
    Progress progress("", 0, false);
    CheckImage(image, AnsiText::Windows1252(), progress, [&](const Departure& departure) {
        found.push_back(departure);
        return true;
    });
    return found;
}

// Why, the image, and a part of exactly one problem, or "" for none at all.
const std::tuple<const char*, std::string, std::string> kDepartures[] = {
    {"nothing", Clean().Build(), ""},
    {"format versions below 3 are none", Patched(kBlock + 276, FromHex("00 01")), ""},
    {"nor are reserved bytes", Patched(kBlock + 284, "abcdef"), ""},
    {"nor are carried dates and attributes", Patched(32, FromHex("12 34 00 00 AA BB CC DD")), ""},
    {"nor is the dirty bit", Patched(kRow + 4, "\x42"), ""},
    {"nor is a password", Patched(kBlock + 278, FromHex("7F FF FF FF")), ""},
    {"a header alone cannot be less", "abc", "shorter than a header"},
    {"a name without an end", Patched(0, std::string(32, 'n')), "name of the database has no end"},
    {"a byte behind the name's end", Patched(31, "n"), "name of the database is not filled up with NUL"},
    {"a version", Patched(34, FromHex("00 01")), "version is 1"},
    {"a type", Patched(60, "DATA"), "type is \"DATA\""},
    {"a creator", Patched(64, "abcd"), "creator is \"abcd\""},
    {"a sort-info block", Patched(56, FromHex("00 00 00 50")), "sort-info"},
    {"a further record list", Patched(72, FromHex("00 00 00 50")), "further record list"},
    {"a seed in the other byte order", Patched(68, FromHex("00 00 00 06")), "seed"},
    {"a newer format version", Patched(kBlock + 276, FromHex("00 04")), "format version is 4"},
    {"a block outside the file", Patched(52, FromHex("7F FF FF FF")), "info block begins at 2147483647, outside"},
    {"a block inside the list", Patched(52, FromHex("00 00 00 50")), "info block begins at 80, inside"},
    {"a condition on no field", WithTail(kNoText + FromHex("05 00")), "condition 1 names no field"},
    {"a condition without an end", WithTail(kText40 + FromHex("02 00")), "text of filter condition 1 has no end"},
    {"a byte behind its text", WithTail("x" + std::string(38, '\0') + "x" + FromHex("02 01")),
     "not filled up with NUL"},
    {"an unused condition with codes", WithTail(std::string(83, '\0') + FromHex("81")), "condition 2 is unused, but"},
    {"an unused condition with a text", WithTail("x"), "condition 1 is unused, but not all zero"},
    {"an operator", WithTail(kNoText + FromHex("02 04")), "unknown operator 4"},
    {"an operator of the type that the field had", WithTail(kNoText + FromHex("02 02")), ""},
    {"a connective", WithTail(kNoText + FromHex("02 40")), "unknown connective 4"},
    {"one in the second", WithTail(kNoText + FromHex("02 00") + kNoText + FromHex("02 80")), "unknown connective 8"},
    {"a hole between conditions", WithTail(kNoText + FromHex("00 00") + kNoText + FromHex("02 00")), "an unused one"},
    {"a key on no field", WithTail("", "03000000 FF000000 FF000000"), "key 1 names no field"},
    {"a hole between keys", WithTail("", "FF000000 00000000 FF000000"), "key 2 stands behind an unused one"},
    {"a direction", WithTail("", "00020000 FF000000 FF000000"), "unknown direction"},
    {"keys of 5 bytes where they are", WithTail("", "0001000000 0100000000 FF00000000"), ""},
    {"bytes between block and records", WithTail("", kNoKeys + "0000"), "belong to nothing"},
    {"no DataType record", Without(0), "no DataType record"},
    {"no FieldLabels record", Without(1), "no FieldLabels record"},
    {"no FieldLengths record", Without(2), "no FieldLengths record"},
    {"no Preferences record", Without(3), "no Preferences record"},
    {"the schema in another order", Swapped(0, 1), "do not stand in the order"},
    {"a hidden row before a shown one", Swapped(4, 5), "do not stand in the order"},
    {"other unique IDs", Renumbered(), "unique IDs"},
    {"an unknown type", WithSchema({"A"}, {"X1"}, {"80"}), "type \"X1\" of field 1 is unknown"},
    {"a filler type", WithSchema({"A"}, {"t", "F"}, {"80"}), "type \"F\" of field 2"},
    {"a width that is no number", WithSchema({"A"}, {"t"}, {"8x"}), "width \"8x\" of field 1"},
    {"a filler width", WithSchema({"A"}, {"t"}, {"80", "81"}), "width \"81\" of field 2"},
    {"a name behind the end of the table", WithSchema({"A", "", "C"}, {"t"}, {"80"}), "name \"C\""},
    {"a lock that is no number", WithSchema({"A"}, {"t"}, {"80"}, "", "x"), "lock of the info text is no number"},
    {"a type that hides nothing", WithSchema({"A"}, {"La\x01x"}, {"80"}, "", "0"), ""},
    {"an info text that hides its lock", WithSchema({"A"}, {"t"}, {"80"}, "\x01", "0"), "entry 0 hides entry 1"},
    {"19 entries", Changed([](ImageParts& parts) { parts.records[2].bytes.erase(6, 4); }), "has not 20 entries but 19"},
    {"a gap", Patched(kBlock - 1, "\x07"), "gap behind the record list is not zero"},
    {"no block, with the usual two bytes", WithoutBlock(2), ""},
    {"a gap without a block", WithoutBlock(2).replace(kBlock - 2, 1, "\x07"), "gap behind the record list is not zero"},
    {"no block, but more bytes", WithoutBlock(3), "Behind the record list are bytes that belong to nothing"},
    {"an offset beyond the end", Patched(kRow, FromHex("7F FF FF FF")), "outside the file"},
    {"one before its predecessor", Patched(kRow, FromHex("00 00 02 30")), "before the record ahead of it"},
    {"one inside the list", Patched(kList, FromHex("00 00 00 50")), "inside the record list"},
    {"another category", With(7), "Record 7 is of another program"},
    {"a deleted row", With(0x82), "Record 7 is of another program"},
    {"no record header", WithRecord(FromHex("00 00 00 00 00 00 00 00 41 00 FF")), "begin with a record header"},
    {"no end mark", WithRecord(FromHex("FF FF FF 01 FF 00 00 00 41")), "no end mark"},
    {"FF in a text", WithRecord(FromHex("FF FF FF 01 FF 00 00 00 41 FF")), "ends at a byte FF inside a text"},
    {"bytes behind the end mark", WithEntries("00 00 41 00 FF 00 00"), "4 bytes behind its end mark"},
    {"a record that cannot be walked", WithEntries("41 00 00 41"), "cannot be walked"},
    {"an entry number without its text's end", WithEntries("00 00 41 00 01 42 00"), "cannot be walked"},
    {"entries out of order", WithEntries("00 01 41 00 00 42"), "stands behind entry 1"},
    {"an entry twice", WithEntries("00 00 41 00 00 42"), "Entry 0 of the data record is there twice"},
    {"more entries than numbers", WithEntries(std::string(1200, '0')), "more entries than there are entry numbers"},
    {"an entry of no field", WithEntries("00 00 41 00 03 42"), "Entry 3 of the data record belongs to no field"},
    {"a text that hides two later fields", WithEntries("00 00 41 01 02 00 02 42"), "byte 2 in the field \"A\" hides"},
    {"its own number hides nothing, the next does", WithEntries("00 00 41 00 01 01 02 00 02 42"), "hides the field"},
    {"a byte that equals the number of an earlier field", WithEntries("00 00 41 00 02 01"), ""},
    {"a byte that equals no field", WithEntries("00 00 03 0A"), ""},
    {"a list that the file cuts off", Clean().Build().substr(0, 100), "file ends inside its record list"},
};

TEST(Check, FindsEachDepartureAndNothingElse) {
    for (const auto& [why, image, problem] : kDepartures) {
        std::string all;
        int matching = 0;
        for (const Departure& departure : Found(image)) {
            all += departure.problem + "\n";
            matching += departure.problem.find(problem) != std::string::npos ? 1 : 0;
        }
        EXPECT_EQ(problem.empty() ? 0 : 1, matching) << why << "\n" << all;
    }
}

TEST(Check, SaysNothingAboutFieldsThatItCannotKnow) {
    for (std::ptrdiff_t record = 0; record < 3; ++record) {
        const auto found = Found(Changed([record](ImageParts& parts) {
            parts.tail = std::string(40, '\0') + FromHex("03 03") + std::string(84, '\0') +
                         FromHex("02000000 FF000000 FF000000");
            parts.records.erase(parts.records.begin() + record);
        }));
        ASSERT_EQ(1u, found.size()) << found.back().problem;
        EXPECT_THAT(found[0].problem, HasSubstr("There is no "));
    }
}

TEST(Check, SaysWhere) {
    const auto found = Found(Patched(kDataType + 8, "q"));
    ASSERT_EQ(1u, found.size());
    EXPECT_EQ(kDataType + 8, found[0].offset);
    EXPECT_EQ(kRow, Found(Patched(kRow, FromHex("7F FF FF FF"))).front().offset);
    std::string image = Patched(kRow + 4, "\x82");
    image[kRow + 8 + 7] = 9;  // the unique ID of the next record, which is looked at earlier
    EXPECT_EQ(kRow, Found(image).front().offset);
}

// Records that overlap could make a small file hours of work.
TEST(Check, ComesToAnEndWithAHostileFile) {
    ImageParts parts;
    parts.AddSchema({"A"}, {"t"});
    for (int i = 0; i < 60'000; ++i) parts.records.push_back({2, "x"});
    std::string image = parts.Build();
    for (std::size_t i = 4; i < 60'004; ++i) {
        image.replace(kList + i * 8, 4, FromHex(i % 3 == 2 ? "00 08 00 00" : "00 01 00 00"));
    }
    const auto found = Found(image);
    EXPECT_LT(60'000u, found.size());
    EXPECT_GT(60'100u, found.size()) << "the place of each row, and what is in the few that are read";
}

class CheckCommand : public QlyTest {};

TEST_F(CheckCommand, PrintsLinesOrJson) {
    Write("good.pdb", Clean());
    Write("bad.pdb", Patched(60, "\"\\\n\x01"));
    const std::string problem = R"(The type is ""\U+000AU+0001", not "Qly1")";
    Expect({"check"}, {{"nothing", {"good.pdb"}, 0, ""},
                       {"nothing, as JSON", {"good.pdb", "--json"}, 0, "", "[]\n"},
                       {"a line", {"bad.pdb"}, 1, "", "60: " + problem + "\n"}});
    const Json expected = Json::array({{{"offset", 60}, {"problem", problem}}});
    EXPECT_EQ(expected, Json::parse(Qly({"check", "bad.pdb", "--json"}).out));
}

}  // namespace
}  // namespace quillary
