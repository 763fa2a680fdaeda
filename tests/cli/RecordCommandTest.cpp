#include "db/Bytes.h"
#include "db/Layout.h"
#include "tests/cli/Qly.h"

namespace quillary {
namespace {

class RecordCommand : public QlyTest {
  protected:
    void SetUp() override {
        ImageParts parts;
        parts.AddSchema({"Name", "No", "Ok", "Due", "At", "Kind", "a=b", "a"},
                        {"t", "I7;2", "B!", "D", "d!", "Lx;y z", "P", "F"});
        parts.Add(2, {"Ann", "1", "ja", "36500", "0", "gone", "555 12 34", "12x"});
        parts.records.push_back(
            {2, FromHex("FF FF FF 01 FF 00  00 00 42  00 09 7A  00 FF")});  // no entry but 0, and one too many
        Write("t.pdb", parts);
    }
    // A call that must succeed and print nothing.
    void Record(const std::string& file, const std::vector<std::string>& words) {
        std::vector<std::string> arguments = {"record", file};
        arguments.insert(arguments.end(), words.begin(), words.end());
        EXPECT_EQ("", Output(arguments));
    }
};

TEST_F(RecordCommand, Refuses) {
    Expect({"record", "t.pdb", "--"},
           {
               {"an unknown verb", {"ad", "Name=x"}, 2, "\"add\"?"},
               {"one that is like none", {"change", "1"}, 2, "They have add, set, delete and duplicate."},
               {"no row", {"set"}, 2, "ROW"},
               {"a row that is no number", {"delete", "x"}, 2, "\"x\""},
               {"nothing to set", {"set", "1"}, 2, "FIELD=VALUE"},
               {"a word that is no value", {"add", "Name"}, 2, "\"Name\" is no FIELD=VALUE"},
               {"values where none belong", {"delete", "1", "Name=x"}, 2, "Too many words"},
               {"row 0", {"delete", "0"}, 1, "no row 0 among the 2 shown records."},
               {"a row behind the last", {"duplicate", "3"}, 1, "no row 3"},
               {"a row before the first", {"set", "-1", "Name=x"}, 1, "no row -1"},
               {"an unknown field", {"add", "name=x"}, 1, "\"Name\", \"No\", \"Ok\", \"Due\", \"At\", \"Kind\", "},
               {"a field twice", {"add", "Name=x", "Name=y"}, 1, "given twice"},
               {"no number", {"add", "a=1" + std::string(60, ',')}, 2, ",\u2026\" is no number."},
               {"no whole number", {"add", "No=1.5"}, 2, "is no whole number"},
               {"no check box", {"set", "1", "Ok=perhaps"}, 1, "neither true nor false"},
               {"a count of days", {"set", "1", "Due=36500"}, 1, "\"36500\" is no date."},
               {"another order", {"set", "1", "Due=13/1/2004"}, 1, "is no date in the order month, day, year; --date"},
               {"a time of no day", {"set", "1", "At=25:00"}, 1, "is no time"},
               {"no item", {"set", "1", "Kind=X"}, 1, "no item of the list"},
               {"an item that another record has left over", {"set", "2", "Kind=gone"}, 1, "no item of the list"},
               {"a character that the page lacks", {"add", "Name=ж"}, 1, "cannot be stored in \"Name\": ж"},
               {"a byte that hides a field", {"set", "1", "Name=x\x03y"}, 1, "would hide the field \"Due\"."},
               {"no UTF-8", {"add", "Name=\xE9"}, 1, "UTF-8"},
           });
}

TEST_F(RecordCommand, SettingWhatAValueReadsAsWritesNothing) {
    const std::string before = Read("t.pdb");
    for (const char* value : {"Name=Ann", "Ok=yes", "Ok=true", "Due=2003-12-07", "Due=12/07/2003", "At=0:00",
                              "Due=December 07, 2003", "At=12:00 am", "Kind=gone", "a=b=(555)1234", "a=12x"}) {
        Record("t.pdb", {"set", "1", value});
        EXPECT_EQ(before, Read("t.pdb")) << value;
    }
    for (const char* value : {"Due=", "Due=No Date", "Kind=", "a="}) Record("t.pdb", {"set", "2", value});
    EXPECT_EQ(before, Read("t.pdb"));
    // The text that is shown for 7 December, but where the day comes first it is another one.
    Record("t.pdb", {"set", "1", "Due=12/07/2003", "--date-order", "dmy"});
    EXPECT_NE(before, Read("t.pdb"));
}

TEST_F(RecordCommand, SetKeepsEveryOtherEntryByteForByte) {
    Record("t.pdb", {"set", "1", "a=b=call me", "Due=7/3/2004", "--date-order", "dmy", "At=1:30 PM", "a=-.5"});
    Record("t.pdb", {"set", "2", "Due=March 7, 2004", "Ok=0"});
    EXPECT_EQ(
        "[\"Ann\", \"1\", \"ja\", \"36591\", \"48600\", \"gone\", \"call me\", \"-.5\"]\n"
        "[\"B\", null, \"false\", \"36591\", null, null, null, null]\n",
        Stored("t.pdb"));
    EXPECT_THAT(Read("t.pdb"), HasSubstr(FromHex("00 00 42  00 02 66616C7365  00 03 3336353931  00 09 7A  00 FF")));
}

TEST_F(RecordCommand, AddTakesWhatANewRecordHas) {
    Record("t.pdb", {"add"});
    Record("t.pdb", {"add", "No=100", "Ok=no", "At=", "Name=[x,y]", "a=1"});
    const std::string rows = Stored("t.pdb");
    EXPECT_THAT(rows, ::testing::ContainsRegex("\\[\"\", \"7\", \"true\", \"\", \"[0-9]+\", \"\", \"\", \"\"\\]"));
    EXPECT_THAT(rows, HasSubstr("[\"[x,y]\", \"100\", \"false\", \"\", \"\", \"\", \"\", \"1\"]"));
    EXPECT_EQ(11, JsonOf({"fields", "t.pdb"})[1]["options"]["first"]) << "two steps, whatever was typed";
    EXPECT_THAT(Qly({"check", "t.pdb"}).out, HasSubstr("Entry 9"));  // the one that was there before, and nothing else
}

TEST_F(RecordCommand, DeleteAndDuplicateThenSort) {
    Record("t.pdb", {"duplicate", "1"});
    EXPECT_EQ("1\n3\n", Output({"find", "t.pdb", "gone", "--all"}));
    EXPECT_EQ(7, JsonOf({"fields", "t.pdb"})[1]["options"]["first"]);
    Record("t.pdb", {"delete", "1"});
    EXPECT_EQ("2\n", Output({"find", "t.pdb", "gone", "--all"}));

    ImageParts parts;
    parts.AddSchema({"Name"}, {"t"});
    parts.tail = std::string(126, '\0') + FromHex("00010000 FF000000 FF000000");  // descending
    for (const char* name : {"b", "c", "a"}) parts.Add(2, {name});
    parts.Add(3, {"d"});
    Write("s.pdb", parts);
    Record("s.pdb", {"set", "1", "Name=b"});
    EXPECT_EQ(parts.Build(), Read("s.pdb")) << "nothing was changed";
    Record("s.pdb", {"add", "Name=bb"});
    Record("s.pdb", {"set", "1", "Name=0"});
    EXPECT_EQ("Name\r\nbb\r\nb\r\na\r\n0\r\n", Output({"list", "s.pdb"}));
    EXPECT_EQ("Name\r\nd\r\n", Output({"list", "s.pdb", "--records", "hidden"}));
    EXPECT_EQ("", Output({"check", "s.pdb"}));
}

TEST_F(RecordCommand, GivesUpRecordsOfOtherProgramsOnlyWhenTold) {
    ImageParts parts;
    parts.AddSchema({"Name"}, {"t"});
    parts.Add(2, {"Ann"});
    parts.Add(9, {"of another program"});
    Write("f.pdb", parts);
    Expect({"options", "f.pdb", "--long-dates", "on"}, {{"without", {}, 1, "in this file, 1 would not come back"},
                                                        {"with", {"--drop-foreign"}, 0, ""},
                                                        {"nothing is left to lose", {}, 0, ""}});
    EXPECT_EQ("", Output({"check", "f.pdb"}));
    const std::string whole = parts.Build();
    Write("f.pdb", whole.substr(0, whole.find("Ann") - 3));
    Expect({"record", "f.pdb", "add"}, {{"damaged ones, too", {}, 1, "Damaged records or settings in this file: 1."}});
}

TEST_F(RecordCommand, GivesUpDamagedSettingsOnlyWhenTold) {
    ImageParts empty;
    empty.AddSchema({"Name"}, {"t"}, {}, "an info text", "77");
    const std::string table = empty.Build();
    const std::size_t infoText = table.find("an info text");
    const auto withSettingsAt = [table](std::uint32_t offset) {
        std::string image = table;
        StoreBig32(&image[kAppInfoOffsetAt], offset);
        return image;
    };
    const auto withFields = [](const std::vector<std::string>& names, const std::vector<std::string>& types) {
        ImageParts fields;
        fields.AddSchema(names, types);
        return fields.Build();
    };
    std::string wrongNumber = withFields({"A", "B", "C"}, {"t", "t", "t"});
    wrongNumber[wrongNumber.find(std::string("\0\2C", 3)) + 1] = '\x80';
    ImageParts locked;
    locked.AddSchema({"Name"}, {"t"}, {}, "an info text", "m123456");
    ImageParts wide;
    wide.AddSchema({"Name"}, {"t"}, {"80", "95"});
    ImageParts roomy;  // for a block that begins too far behind
    roomy.AddSchema({"Name"}, {"t"});
    roomy.tail = std::string(126, '\0') + FromHex("FF000000 FF000000 FF000000") + std::string(40, '\0');
    std::string shifted = roomy.Build();
    StoreBig32(&shifted[kAppInfoOffsetAt], DatabaseHeader::Read(shifted)->AppInfoOffset() + 8);
    std::string untold = shifted;
    StoreBig32(&untold[kAppInfoOffsetAt], 0);
    StoreBig32(&untold[kSortInfoOffsetAt], DatabaseHeader::Read(shifted)->AppInfoOffset());
    ImageParts row = empty;
    row.Add(2, {"Zoe"});
    std::string beheaded = row.Build();
    beheaded.erase(beheaded.rfind(kRecordHeader), kRecordHeader.size());
    for (const auto& [name, image] :
         {std::pair("cut in the info text", table.substr(0, infoText + 3)),
          {"stray bytes behind it", table + "stray"},
          {"a field behind one without a name", withFields({"A", "", "C"}, {"t", "t", "t"})},
          {"a hidden name", withFields({"A\x02X", "B", "C"}, {"t", "t", "t"})},
          {"a hidden end", withFields({"A\x01", "B"}, {"t", "t"})},
          {"a hidden type", withFields({"A", "B"}, {"La\x01x", "Lone;two"})},
          {"settings outside the file", withSettingsAt(0xFFFFFF)},
          {"settings in the list", withSettingsAt(4)},
          {"settings that are there", withSettingsAt(0)},
          {"an entry without its number", wrongNumber},
          {"a byte that would become another", withFields({"A\x02", "B"}, {"t", "t"})},
          {"a type behind the last field", withFields({"A"}, {"t", "Lred;green"})},
          {"a lock that is no number", locked.Build()},
          {"a width behind the last field", wide.Build()},
          {"a text with a stray zero", withFields({std::string("Na\0e", 4)}, {"t"})},
          {"settings that are not where they begin", shifted},
          {"settings of which only a sort-info block is told", untold},
          {"a row without its header", beheaded},
          {"settings in a record", withSettingsAt(DatabaseHeader::Read(table)->AppInfoOffset() + 16)}}) {
        Write("f.pdb", image);
        Expect({"record", "f.pdb", "add"}, {{name, {}, 1, "Damaged records or settings in this file: 1."}});
        EXPECT_EQ(image, Read("f.pdb")) << name;
    }
    std::vector<std::string> twenty(20, "A");
    twenty[7] = "\x14";
    ImageParts disordered;
    disordered.AddSchema({"A", "B"}, {"t", "F"});
    disordered.records[0].bytes = FromHex("FFFFFF01FF00 0000 74 0002 54 0001 46 00FF");
    ImageParts old;
    old.AddSchema({"Name"}, {"t"});
    old.formatVersion = 2;
    old.tail = std::string(1, '\0');
    for (const auto& [name, image] : {std::pair("zeros that fill up", table + std::string(3, '\0')),
                                      {"a number of no field in a name", withFields({"\5AB"}, {"t"})},
                                      {"nor in one of twenty", withFields(twenty, std::vector<std::string>(20, "t"))},
                                      {"entries in another order", disordered.Build()},
                                      {"a text without a field", withFields({"A"}, {"t", "t"})},
                                      {"an old, short block", old.Build()}}) {
        Write("f.pdb", image);
        Expect({"record", "f.pdb", "add"}, {{name, {}, 0, ""}, {name, {}, 0, ""}});
    }
}

class NewAndOptions : public QlyTest {};

TEST_F(NewAndOptions, MakesWhatWasAskedFor) {
    EXPECT_EQ("", Output({"new", "n.pdb", "--name", " Zoë's ", "--field", "S:sequence:-5;3", "--field", "L:list:x;é;",
                          "--field", "C:checkbox:checked", "--field", "T:text:capitalize", "--field", "T:e-mail"}));
    EXPECT_EQ("", Output({"check", "n.pdb"}));
    const Json info = JsonOf({"info", "n.pdb", "--json"});
    EXPECT_EQ("Zoë's", info["name"]);
    EXPECT_EQ(Json::parse(R"([
        {"name": "S", "type": "sequence", "width": 80, "options": {"first": -5, "increment": 3}},
        {"name": "L", "type": "list", "width": 80, "options": {"items": ["x", "é", ""]}},
        {"name": "C", "type": "checkbox", "width": 80, "options": {"checked": true}},
        {"name": "T", "type": "text", "width": 80, "options": {"capitalize": true}},
        {"name": "T", "type": "e-mail", "width": 80, "options": {}}])"),
              info["fields"]);
}

TEST_F(NewAndOptions, Refuses) {
    Write("there.pdb", "whatever");
    const std::string unstorable = "These characters cannot be stored";
    Expect({"new", "--field", "A:text"},
           {
               {"a file that is there", {"there.pdb", "--name", "N"}, 1, "A database with this name already exists"},
               {"no folder", {"no/n.pdb", "--name", "N"}, 1, "Check the file permissions. (No such file or directory)"},
               {"no name", {"n.pdb"}, 2, "--name"},
               {"a name that is too long", {"n.pdb", "--name", "12345678901234567890123456789"}, 1, "28"},
               {"a name that the page lacks", {"n.pdb", "--name", "ж"}, 1, unstorable},
               {"an impossible one", {"n.pdb", "--name", "a/b"}, 1, "\"a/b\" cannot be the name"},
               {"one of blanks", {"n.pdb", "--name", "  "}, 1, "You must provide a database name"},
           });
    Expect({"new", "n.pdb", "--name", "N"}, {{"no field", {}, 2, "--field"}});
    Expect({"new", "n.pdb", "--name", "N", "--field"},
           {
               {"an item that the page lacks", {"A:list:x;ж"}, 1, unstorable},
               {"a control character in an item", {"A:list:x\ny"}, 1, "control character"},
               {"a type in capitals", {"A:Text"}, 2, "\"text\"?"},
               {"a type that is like none", {"A:boolean"}, 2, "\"boolean\". \"qly help new\" lists them."},
               {"no type", {"A"}, 2, "NAME:TYPE"},
               {"an option for a type without any", {"A:number:1"}, 2, "no options"},
               {"an option of another type", {"A:date:now"}, 2, "no option \"now\""},
               {"no number for a sequence", {"A:sequence:x"}, 2, "\"x\" is no whole number"},
               {"more than 32 bits", {"A:sequence:1;2147483648"}, 2, "\"2147483648\""},
               {"three numbers for a sequence", {"A:sequence:1;2;3"}, 2, "increment"},
           });
}

TEST_F(NewAndOptions, SetsOptions) {
    Output({"new", "o.pdb", "--name", "O", "--field", "A:date"});
    Output({"record", "o.pdb", "add", "A=2004-03-07"});
    const std::string before = Read("o.pdb");
    Expect({"options", "o.pdb"}, {{"one", {"--long-dates", "on"}, 0, ""},
                                  {"not the other", {}, 0, "", "long-dates on\nedit-on-select off\n"}});
    EXPECT_EQ("A\r\n\"March 07, 2004\"\r\n", Output({"list", "o.pdb"}));
    Expect({"options", "o.pdb"}, {{"both", {"--edit-on-select", "on", "--long-dates=off"}, 0, ""},
                                  {"changed", {}, 0, "", "long-dates off\nedit-on-select on\n"},
                                  {"and back", {"--edit-on-select", "off"}, 0, ""}});
    EXPECT_EQ(before, Read("o.pdb"));
}

}  // namespace
}  // namespace quillary
