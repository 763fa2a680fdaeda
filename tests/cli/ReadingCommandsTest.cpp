#include "tests/cli/Qly.h"

namespace quillary {
namespace {

std::string Condition(const std::string& text, char selector, char codes) {
    return text + std::string(40 - text.size(), '\0') + selector + codes;
}

class ReadingCommands : public QlyTest {
  protected:
    void SetUp() override {
        ImageParts parts;
        parts.name = "Caf\xE9";
        parts.AddSchema({"Name", "Due", "At", "Done", "Tel"}, {"t", "D!", "d", "B", "P"}, {"120", "-5"},
                        "Hello\r\n\"x\"");
        parts.tail = Condition("x", 1, '\x81') + Condition("T", 5, 3) + std::string(42, '\0') +
                     FromHex("01 01 00 00  00 00 00 00  FF 00 00 00");
        parts.Add(2, {"Ann, \"A\"", "36500", "37859", "ja", "5551234"});
        parts.Add(0x42, {"Bj\xF8rn\nx", "", "", "", ""});
        parts.Add(2, {"50%d \\\t|"});
        parts.Add(3, {"\x81\x85 hid", "-1", "-60", "no", "call 5"});
        m_image = parts.Build();
        Write("t.pdb", m_image);
    }
    void TearDown() override { EXPECT_EQ(m_image, Read("t.pdb")) << "a reading command wrote"; }

    std::string m_image;
};

const std::tuple<const char*, std::vector<std::string>, std::string> kLists[] = {
    {"display texts; a missing entry is empty",
     {},
     "Name,Due,At,Done,Tel\r\n"
     "\"Ann, \"\"A\"\"\",12/07/2003,10:30 am,true,555-1234\r\n"
     "\"Bjørn\r\nx\",No Date,No Time,false,\r\n"
     "50%d \\\t|,,,,\r\n"},
    {"ISO dates and times, none is empty; line ends as they are stored",
     {"--iso", "--records", "all"},
     "Name,Due,At,Done,Tel\r\n"
     "\"Ann, \"\"A\"\"\",2003-12-07,10:30:59,true,555-1234\r\n"
     "\"Bjørn\nx\",,,false,\r\n"
     "50%d \\\t|,,,,\r\n"
     "\xC2\x81… hid,1903-12-31,-60,false,call 5\r\n"},
    {"stored texts",
     {"--stored", "--format", "tsv"},
     "Name\tDue\tAt\tDone\tTel\n"
     "Ann, \"A\"\t36500\t37859\tja\t5551234\n"
     "Bjørn\\nx\t\t\t\t\n"
     "50%d \\\\\\t|\t\t\t\t\n"},
    {"cells: first lines, directives expanded, rows from 0",
     {"--cells", "--format", "tsv"},
     "Name\tDue\tAt\tDone\tTel\n"
     "Ann, \"A\"\t12/07/2003\t10:30 am\ttrue\t555-1234\n"
     "Bjørn\tNo Date\tNo Time\tfalse\t\n"
     "502 \\\\\\t|\t\t\t\t\n"},
    {"JSON with a missing entry as null",
     {"--stored", "--format", "json"},
     "{\"fields\": [\"Name\", \"Due\", \"At\", \"Done\", \"Tel\"], \"records\": [\n"
     "[\"Ann, \\\"A\\\"\", \"36500\", \"37859\", \"ja\", \"5551234\"],\n"
     "[\"Bjørn\\nx\", \"\", \"\", \"\", \"\"],\n"
     "[\"50%d \\\\\\t|\", null, null, null, null]\n"
     "]}\n"},
    {"JSON lines, hidden records alone",
     {"--format", "jsonl", "--records", "hidden"},
     "[\"\xC2\x81… hid\", \"12/31/1903\", \"-60\", \"false\", \"call 5\"]\n"},
    {"another code page, without a character for a byte",
     {"--code-page", "windows-1253", "--records", "hidden"},
     "Name,Due,At,Done,Tel\r\n\xEF\xBF\xBD… hid,12/31/1903,-60,false,call 5\r\n"},
};

TEST_F(ReadingCommands, List) {
    for (const auto& [why, options, output] : kLists) Expect({"list", "t.pdb"}, {{why, options, 0, "", output}});
    ImageParts parts;
    parts.AddSchema({"Text"}, {"t"});
    parts.Add(2, {std::string(4097, 'x')});
    Write("long.pdb", parts);
    EXPECT_EQ("Text\r\n" + std::string(4096, 'x') + "\r\n", Output({"list", "long.pdb", "--cells"}));
}

// Values of every length around the words that they are copied in, with one byte that needs care in every place.
TEST_F(ReadingCommands, ListCopiesEveryByteOfEveryLength) {
    ImageParts parts;
    parts.AddSchema({"Text"}, {"t"});
    std::string expected;
    for (std::size_t size = 0; size < 20; ++size) {
        for (const char* special : {"", ",", "\"", "\xE9", "\x7F", "\x1F", " "}) {
            for (std::size_t at = 0; at < (*special ? size : 1); ++at) {
                std::string text = std::string("abcdefghijklmnopqrst").substr(0, size);
                if (*special) text[at] = *special;
                parts.Add(2, {text});
                if (*special == '\xE9') text.replace(at, 1, "é");
                if (*special == '"') text.insert(at, "\"");
                const bool quoted = *special == ',' || *special == '"';
                expected += (quoted ? "\"" + text + "\"" : text) + "\r\n";
            }
        }
    }
    Write("lengths.pdb", parts);
    EXPECT_EQ("Text\r\n" + expected, Output({"list", "lengths.pdb"}));
}

TEST_F(ReadingCommands, Find) {
    Expect({"find", "t.pdb"}, {
                                  {"the first row, case ignored", {"BJØRN"}, 0, "", "2\n"},
                                  {"never a hidden record", {"hid"}, 1, ""},
                                  {"every row", {"n", "--all"}, 0, "", "1\n2\n"},
                                  {"in one field", {"no", "--all", "--field", "At"}, 0, "", "2\n"},
                                  {"behind a row", {"n", "--after", "1"}, 0, "", "2\n"},
                                  {"behind the last one", {"", "--after", "3"}, 1, ""},
                                  {"far behind the last one", {"", "--after", "99999999999999999999"}, 1, ""},
                                  {"a character that no stored text can hold", {"ж"}, 1, ""},
                              });
}

TEST_F(ReadingCommands, Info) {
    EXPECT_EQ(Json::parse(R"({"name": "Café", "formatVersion": 3, "locked": false, "longDates": false,
        "editOnSelect": false, "shown": 3, "hidden": 1, "infoText": "Hello\r\n\"x\"", "infoLocked": false,
        "fields": [{"name": "Name", "type": "text", "width": 120, "options": {"capitalize": false}},
                   {"name": "Due", "type": "date", "width": -5, "options": {"today": true}},
                   {"name": "At", "type": "time", "width": 80, "options": {"now": false}},
                   {"name": "Done", "type": "checkbox", "width": 80, "options": {"checked": false}},
                   {"name": "Tel", "type": "phone", "width": 80, "options": {}}],
        "sort": [{"field": "Due", "descending": true}, {"field": "Name", "descending": false}],
        "filter": {"combine": "or", "conditions": [{"field": null, "operator": "contains", "value": "x"},
                                                   {"field": "Done", "operator": null, "value": "T"}]}})"),
              JsonOf({"info", "t.pdb", "--json"}));
    EXPECT_THAT(Output({"info", "t.pdb"}), HasSubstr("Filter, any of:\n  All Fields contains \"x\"\n  Done (unknown "
                                                     "operator) \"true\"\nInfo text:\nHello\n\"x\"\n"));
    ImageParts parts;
    parts.AddSchema({"Due"}, {"D"});
    parts.tail = Condition("36500", 2, '\x82') + std::string(84, '\0') + FromHex("FF000000 FF000000 FF000000");
    Write("one.pdb", parts);
    EXPECT_THAT(Output({"info", "one.pdb"}), HasSubstr("  Due is before \"12/07/2003\"\n"));
    EXPECT_EQ("and", JsonOf({"info", "one.pdb", "--json"})["filter"]["combine"]) << "or joins at least two";
    parts.tail =
        Condition("x", 0, '\x81') + Condition("1", 2, 0) + Condition("2", 2, 0) + FromHex("FF000000 FF000000 FF000000");
    Write("hole.pdb", parts);
    EXPECT_EQ("and", JsonOf({"info", "hole.pdb", "--json"})["filter"]["combine"]) << "an unused condition says nothing";
}

TEST_F(ReadingCommands, Hash) {
    Expect({"hash"}, {{"the first line", {"--database"}, 0, "", "184150549\n", {"a\n", {}, {}}},
                      {"without its CR", {"--lock"}, 0, "", "494665641\n", {"a\r\nb", {}, {}}},
                      {"an empty one", {"--lock"}, 0, "", "0\n", {"\nx", {}, {}}},
                      {"nothing", {"--database"}, 0, "", "0\n"}});
}

}  // namespace
}  // namespace quillary
