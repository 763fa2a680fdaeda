#include <gmock/gmock.h>
#include <rapidcheck.h>

#include <nlohmann/json.hpp>

#include "tests/cli/Qly.h"
#include "tests/fakes/TestDatabase.h"

namespace quillary {

namespace {

using ::testing::HasSubstr;
using Json = nlohmann::json;

struct RefusalCase {
    const char* why;
    std::string table;
    std::vector<std::string> options;
    int status;
    const char* message;
};

class Import : public QlyTest {
  protected:
    QlyResult ImportTable(const std::string& table, const std::string& file,
                          const std::vector<std::string>& options = {}) {
        std::vector<std::string> arguments = {"import", "-", file};
        arguments.insert(arguments.end(), options.begin(), options.end());
        return Qly(arguments, {table, {}, {}});
    }
    void ExpectRefusals(const std::string& file, const std::vector<RefusalCase>& cases) {
        for (const RefusalCase& c : cases) {
            Expect({"import", "-", file}, {{c.why, c.options, c.status, c.message, "", c.table}});
        }
    }
    std::string Stored(const std::string& file) { return Output({"list", file, "--stored", "--format", "jsonl"}); }
};

std::vector<std::string> Fields(const std::vector<const char*>& definitions) {
    std::vector<std::string> options;
    for (const char* definition : definitions) options.insert(options.end(), {"--field", definition});
    return options;
}

std::string Repeated(const std::string& text, std::size_t count) {
    std::string all;
    for (std::size_t i = 0; i < count; ++i) all += text;
    return all;
}

const std::vector<RefusalCase> kRefusals = {
    {"an empty table", "", {}, 1, "The table is empty"},
    {"an empty name", "A,,C\n", {}, 1, "Row 1, column 2: The blank field must have a name."},
    {"a name of blanks", "A,  \n", {}, 1, "Row 1, column 2: The blank field must have a name."},
    {"a line break in a name", "\"A\nB\"\n", {}, 1, "Row 1, column 1: The name of a field holds no control character."},
    {"a name twice", "A,B,A\n", {}, 1, "Row 1, column 3: there is another column \"A\"."},
    {"too many columns", Repeated("x,", 20) + "y\n", {}, 1, "Row 1, column 21: a database has at most 20 fields."},
    {"a ragged row", "A,B\n1,2\n1\n", {}, 1, "Row 3 has 1 values where the header has 2."},
    {"a ragged row that is longer", "A,B\n1,2,3\n", {}, 1, "Row 2 has more values than the header, which has 2."},
    {"a stray quote", "A,B\n1,2\n3,4\"\n", {}, 1, "Row 3, column B: there is a quote inside"},
    {"text behind a quote", "A,B\n1,\"2\"x\n", {}, 1, "Row 2, column B: there is text behind"},
    {"a quote without end", "A,B\n1,\"2\n3,4\n", {}, 1, "Row 2, column B: the closing quote is missing."},
    {"no UTF-8", "A,B\n1,\xE9\n", {}, 1, "Row 2, column B: the value is no UTF-8 text."},
    {"no UTF-8 in the header", "A,\xC0\x80\n", {}, 1, "Row 1, column 2: the value is no UTF-8 text."},
    {"a character that the page lacks", "A,B\n1,xжx\n", {"--lenient"}, 1, "Row 2, column B: These characters"},
    {"the same in a name", "A,ж\n", {}, 1, "Row 1, column 2: These characters"},
    {"the character of the end mark", "A\n\xC3\xBF\n", {"--lenient"}, 1, "Row 2, column A: These characters"},
    {"NUL", std::string("A\nx\0y\n", 6), {"--lenient"}, 1, "Row 2, column A: These characters"},
    {"a tab that hides a later field",
     "a,b,c,d,e,f,g,h,i,j\n1,2,3,\"x\ty\",5,6,7,8,9,10\n",
     {"--lenient"},
     1,
     "Row 2, column d: A tab in \"d\" would hide the field \"j\". Move \"d\" behind it or take the tab out."},
    {"too many rows",
     "A\n" + Repeated("1\n", 65'532),
     {},
     1,
     "A database holds at most 65,531 records. Nothing was imported."},
    {"a column without a --field", "A,B\n1,2\n", Fields({"A:text"}), 1, "Row 1, column B: there is no --field"},
    {"no number", "A\n1\n1e5\n", Fields({"A:number"}), 1, "Row 3, column A: \"1e5\" is no number"},
    {"two points", "A\n1.2.3\n", Fields({"A:number"}), 1, "Row 2, column A: \"1.2.3\" is no number"},
    {"a fraction in a sequence", "A\n1.0\n", Fields({"A:sequence"}), 1, "Row 2, column A: \"1.0\" is no number"},
    {"no check box", "A\nmaybe\n", Fields({"A:checkbox"}), 1, "Row 2, column A: \"maybe\" is neither true nor false"},
    {"no item", "A\nRed\n", Fields({"A:list:red;green"}), 1, "Row 2, column A: \"Red\" is no item"},
    {"no day", "A\n2023-02-29\n", Fields({"A:date"}), 1, "Row 2, column A: \"2023-02-29\" is no date"},
    {"no count of days", "A\n36500\n", Fields({"A:date"}), 1, "Row 2, column A: \"36500\" is no date"},
    {"no order fits all dates, and the user's not this one", "A\n01/13/2004\n13/01/2004\n", Fields({"A:date"}), 1,
     "Row 3"},
    {"no time", "A\n24:00\n", Fields({"A:time"}), 1, "Row 2, column A: \"24:00\" is no time"},
    {"too many definitions", "A\n", Fields(std::vector<const char*>(21, "A:text")), 1, "at most 20"},
    {"a name that is too long", "A\n1\n", {"--name", "12345678901234567890123456789"}, 1, "longer than 28"},
};

TEST_F(Import, RefusesWholeAndSaysWhere) { ExpectRefusals("new.pdb", kRefusals); }

TEST_F(Import, AppendingIsAllOrNothing) {
    ImageParts parts;
    parts.AddSchema({"Name", "No"}, {"t", "I1;1"});
    parts.Add(2, {"Ann", "1"});
    parts.Add(9, {"of another program"});
    Write("t.pdb", parts.Build());
    ExpectRefusals("t.pdb",
                   {
                       {"a column without a field", "Name,Due\nx,\n", {}, 1, "the database has no field \"Due\"."},
                       {"a bad value in the last row", "Name,No\nx,2\ny,z\n", {}, 1, "Row 3, column No"},
                       {"too many with those that are there", "Name\n" + Repeated("x\n", 65'531), {}, 1, "65,531"},
                       {"records of another program", "Name\nx\n", {}, 1, "1 records of other programs"},
                       {"a name for what has one", "Name\nx\n", {"--name", "N"}, 2, "--name"},
                       {"fields for what has some", "Name\nx\n", Fields({"Name:text"}), 2, "--field"},
                       {"widths for what has some", "Name\nx\n", {"--fit"}, 2, "--fit"},
                       {"a table that is not there", "", {}, 1, "The table is empty"},
                   });
    EXPECT_THAT(Qly({"import", "none.csv", "t.pdb"}).err, HasSubstr("none.csv cannot be read (No such file"));
    EXPECT_EQ(0, ImportTable("Name\nx\n", "t.pdb", {"--drop-foreign"}).status);
    EXPECT_EQ("[\"Ann\", \"1\"]\n[\"x\", \"\"]\n", Stored("t.pdb"));
    EXPECT_EQ("", Output({"check", "t.pdb"}));
}

TEST_F(Import, AppendedRecordsJoinSortAndMoveTheSequence) {
    ImageParts parts;
    parts.AddSchema({"Name", "No", "Ok", "Name"}, {"t", "I10;5", "B!", "t"});
    parts.tail =
        std::string(39, ' ') + FromHex("00 02 00") + std::string(84, '\0') + FromHex("00000000 FF000000 FF000000");
    parts.Add(2, {"m", "1", "true", ""});
    parts.Add(3, {"hidden", "2", "true", ""});
    Write("t.pdb", parts.Build());
    EXPECT_EQ("2 records, 1 values stored empty\n", ImportTable("No,Name\n-7,z\nx,a\n", "t.pdb", {"--lenient"}).out);
    EXPECT_EQ("[\"a\", \"\", \"false\", \"\"]\n[\"m\", \"1\", \"true\", \"\"]\n[\"z\", \"-7\", \"false\", \"\"]\n",
              Stored("t.pdb"));
    const auto next = [this] { return Json::parse(Output({"fields", "t.pdb"}))[1]["options"]["first"]; };
    EXPECT_EQ(10, next()) << "what was brought is behind it";
    EXPECT_EQ(0, ImportTable("No\n12\n11\n", "t.pdb").status);
    EXPECT_EQ(17, next());
    EXPECT_EQ(0, ImportTable("No\n99999999999\n", "t.pdb").status);
    EXPECT_EQ(2147483647, next());
    EXPECT_THAT(Output({"info", "t.pdb"}), HasSubstr("1 hidden"));
}

TEST_F(Import, StoresWhatTheFieldTypesHold) {
    const auto options = Fields({"n:number", "s:sequence", "c:checkbox", "d:date", "t:time", "l:list:red;b b",
                                 "p:phone", "m:e-mail", "w:web-url", "x:text"});
    ASSERT_EQ(0, ImportTable("x,w,m,p,l,t,d,c,s,n\n"
                             "\"a\nb\r\n\",http://x,a@b,(555) 123-4567,b b,3:05 PM,\"march 07, 2004\",YES,-4,-.5\n"
                             ",,,555 12 34,,No Time,No Date,0,,\n"
                             "é,,,call 5551234,red,23:59:59,2004-3-7,1,007,007.10\n",
                             "t.pdb", options)
                     .status);
    EXPECT_EQ(
        "[\"a\\nb\\r\\n\", \"http://x\", \"a@b\", \"5551234567\", \"b b\", \"54300\", \"36591\", \"true\", \"-4\", "
        "\"-.5\"]\n"
        "[\"\", \"\", \"\", \"5551234\", \"\", \"\", \"\", \"false\", \"\", \"\"]\n"
        "[\"é\", \"\", \"\", \"call 5551234\", \"red\", \"86340\", \"36591\", \"true\", \"007\", \"007.10\"]\n",
        Stored("t.pdb"));
    EXPECT_EQ("", Output({"check", "t.pdb"}));
}

TEST_F(Import, DateOrderOfAColumn) {
    struct Case {
        const char* why;
        const char* table;
        const char* order;   // --date-order
        const char* stored;  // nullptr: refused
    };
    const Case kCases[] = {
        {"the only order that fits, month first", "D\n03/07/2004\n03/13/2004\n", "", "[\"36591\"]\n[\"36597\"]\n"},
        {"the only order that fits, day first", "D\n03.07.2004\n13.07.2004\n", "", "[\"36709\"]\n[\"36719\"]\n"},
        {"the user's when several fit", "D\n03/07/2004\n", "", "[\"36591\"]\n"},
        {"the given one when several fit", "D\n03/07/2004\n", "dmy", "[\"36709\"]\n"},
        {"the given one where it does not fit", "D\n03/13/2004\n", "dmy", nullptr},
        {"ISO dates have no say", "D\n2004-03-13\n03/07/2004\n", "dmy", "[\"36597\"]\n[\"36709\"]\n"},
        {"a blank before does not make it an ISO date", "D\n 03/13/2004\n", "", "[\"36597\"]\n"},
        {"two digits of a year are of this century", "D\n12/31/03\n", "", "[\"36524\"]\n"},
    };
    for (const Case& c : kCases) {
        std::vector<std::string> options = Fields({"D:date"});
        if (*c.order) options.insert(options.end(), {"--date-order", c.order});
        const QlyResult result = ImportTable(c.table, "d.pdb", options);
        EXPECT_EQ(c.stored ? 0 : 1, result.status) << c.why << result.err;
        if (!c.stored) continue;
        EXPECT_EQ(c.stored, Stored("d.pdb")) << c.why;
        std::remove(PathOf("d.pdb").c_str());
    }
}

TEST_F(Import, InfersATypeOnlyWithoutADoubt) {
    struct Case {
        const char* why;
        std::vector<const char*> values;
        const char* type;
        const char* order;
    };
    const Case kCases[] = {
        {"numbers, and none", {"1", "-2.50", "", ".5", "0", "0.1"}, "number", ""},
        {"a leading zero may be part of a code", {"1", "007"}, "text", ""},
        {"behind a minus too", {"-07"}, "text", ""},
        {"thousands separated", {"1", "1,000"}, "text", ""},
        {"nothing at all", {"", ""}, "text", ""},
        {"true and false", {"True", "FALSE"}, "checkbox", ""},
        {"yes and no", {"yes", "No"}, "checkbox", ""},
        {"both", {"yes", "true"}, "text", ""},
        {"a third state", {"yes", ""}, "text", ""},
        {"0 and 1 are numbers", {"0", "1"}, "number", ""},
        {"ISO dates, and none", {"2004-03-07", "", "No Date"}, "date", ""},
        {"none alone", {"No Date", "No Date"}, "text", ""},
        {"dates that one order fits", {"03/07/2004", "12/31/2004"}, "date", ""},
        {"dates that two orders fit", {"03/07/2004", "12/11/2004"}, "text", ""},
        {"unless the order is given", {"03/07/2004", "12/11/2004"}, "date", "dmy"},
        {"and does not fit", {"03/07/2004", "12/31/2004"}, "text", "dmy"},
        {"two digits of a year", {"12/31/04"}, "text", ""},
        {"a version", {"1.13.100"}, "text", ""},
        {"an impossible day", {"2004-03-07", "2004-02-30"}, "text", ""},
        {"times", {"09:30", "", "23:59", "No Time", "9:30 am", "10:00:00"}, "time", ""},
        {"seconds would get lost", {"09:30:01"}, "text", ""},
        {"a length", {"3:45"}, "text", ""},
        {"a date among words", {"2004-03-07", "soon"}, "text", ""},
        {"blanks", {" ", ""}, "text", ""},
        {"phones and addresses stay as they are", {"555-1234", "a@b.c"}, "text", ""},
    };
    for (const Case& c : kCases) {
        std::string table = "Other,C\n";
        for (const char* value : c.values) table += "x,\"" + std::string(value) + "\"\n";
        const std::vector<std::string> options =
            *c.order ? std::vector<std::string>{"--date-order", c.order} : std::vector<std::string>{};
        ASSERT_EQ(0, ImportTable(table, "t.pdb", options).status) << c.why;
        EXPECT_EQ(c.type, Json::parse(Output({"fields", "t.pdb"}))[1]["type"]) << c.why;
        std::remove(PathOf("t.pdb").c_str());
    }
}

TEST_F(Import, NamesAndWidths) {
    ASSERT_EQ(0, ImportTable("A,Twenty characters ..,C,D\nx,x,\"" + std::string(50, 'w') +
                                 "\nsecond\",2004-03-07\n1234567,,,\n",
                             "A name that is much too long for it.pdb", {"--fit"})
                     .status);
    const Json info = Json::parse(Output({"info", "A name that is much too long for it.pdb", "--json"}));
    EXPECT_EQ("A name that is much too long", info["name"]);
    const std::vector<int> widths = {info["fields"][0]["width"], info["fields"][1]["width"], info["fields"][2]["width"],
                                     info["fields"][3]["width"]};
    EXPECT_EQ((std::vector<int>{7 * 7, 20 * 7, 240, 10 * 7}), widths);

    ASSERT_EQ(0, ImportTable("B,A\n2,1\n", "o.pdb",
                             {"--name", " Zoë ", "--field", "C:checkbox", "--field", "A:text", "--field", "B:text"})
                     .status);
    EXPECT_EQ("B,A,C\r\n2,1,false\r\n", Output({"list", "o.pdb"})) << "the header's order, then what has no column";
    EXPECT_EQ("Zoë", Json::parse(Output({"info", "o.pdb", "--json"}))["name"]);
    EXPECT_EQ(80, Json::parse(Output({"fields", "o.pdb"}))[0]["width"]);
}

TEST_F(Import, FillsADatabaseToTheLastRecord) {
    ASSERT_EQ(0, ImportTable("A\n" + Repeated("1\n", 65'531), "t.pdb").status);
    EXPECT_EQ("", Output({"check", "t.pdb"}));
    EXPECT_EQ(1, Qly({"record", "t.pdb", "add", "A=2"}).status);
    EXPECT_EQ("65531\n", Output({"find", "t.pdb", "1", "--after", "65530"}));
}

// What list prints with --iso, import reads back to the same stored texts, whatever order the user writes dates in.
TEST_F(Import, ReadsBackWhatListPrints) {
    struct Column {
        const char* definition;
        const char* type;
        std::vector<std::string> stored;
    };
    const std::vector<std::string> texts = {"",    "a",        "\"",   ",", "a\r\nb",  "\r",
                                            " x ", "\x80%d\\", "\"\"", "'", "\xE9,\"", "No Date"};
    const Column columns[] = {
        {"t:text", "t", texts},
        {"n:number", "F", {"", "0", "-0.50", "007", ".5", "12345678901234567890"}},
        {"s:sequence", "I1;1", {"", "0", "-7", "007"}},
        {"c:checkbox", "B", {"false", "true"}},
        {"d:date", "D", {"", "0", "-1", "36500", "36597", "2957003", "-658800"}},
        {"h:time", "d", {"", "0", "60", "43200", "86340"}},
        {"l:list:x;\"y,\";z z", "Lx;\"y,\";z z", {"", "x", "\"y,\"", "z z"}},
        {"p:phone", "P", {"", "5551234", "2125551234", "call 5551234", "555,1"}},
        {"m:e-mail", "M", texts},
        {"w:web-url", "W", texts},
    };
    std::vector<std::string> names;
    std::vector<std::string> types;
    std::vector<const char*> definitions;
    for (const Column& column : columns) {
        names.emplace_back(1, column.definition[0]);
        types.emplace_back(column.type);
        definitions.push_back(column.definition);
    }
    ::setenv("RC_PARAMS", "max_success=25", 0);
    EXPECT_TRUE(rc::check("import reads back what list prints", [&] {
        ImageParts parts;
        parts.AddSchema(names, types);
        for (int rows = *rc::gen::inRange(0, 8); rows > 0; --rows) {
            std::vector<std::string> record;
            for (const Column& column : columns) record.push_back(*rc::gen::elementOf(column.stored));
            parts.Add(2, record);
        }
        Write("a.pdb", parts.Build());
        std::remove(PathOf("b.pdb").c_str());
        std::vector<std::string> options = Fields(definitions);
        options.insert(options.end(), {"--date-order", *rc::gen::element("mdy", "dmy", "ymd")});
        RC_ASSERT(ImportTable(Output({"list", "a.pdb", "--iso"}), "b.pdb", options).err.empty());
        RC_ASSERT(Stored("b.pdb") == Stored("a.pdb"));
        RC_ASSERT(Qly({"check", "b.pdb"}).out.empty());
    }));
}

}  // namespace

}  // namespace quillary
