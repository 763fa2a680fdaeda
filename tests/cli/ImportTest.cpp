#include <rapidcheck.h>

#include "tests/cli/Qly.h"

namespace quillary {
namespace {

struct RefusalCase {
    const char* why;
    std::string table;
    const char* message;
    std::vector<std::string> options = {};
    int status = 1;
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
            Expect({"import", "-", file}, {{c.why, c.options, c.status, c.message, "", {c.table, {}, {}}}});
        }
    }
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
    {"an empty table", "", "The table is empty"},
    {"a byte-order mark alone", "\xEF\xBB\xBF", "The table is empty"},
    {"an empty name", "A,,C\n", "Row 1, column 2: The blank field must have a name."},
    {"a line break in a name", "\"A\nB\"\n", "Row 1, column 1: A line break, tab or other control character"},
    {"a C1 control in a name", "A\xC2\x81\n", "Row 1, column 1: A line break, tab or other control character"},
    {"a name twice", "A,B,A\n", "Row 1, column 3: an earlier column has the same name."},
    {"too many columns", Repeated("x,", 20) + "y\n", "Row 1, column 21: a database has at most 20 fields."},
    {"a short row", "A,B\n1,2\n1\n", "Row 3, column B: the row ends before it, with 1 value."},
    {"a long row", "A,B\n1,2,3\n", "Row 2, column 3: the header has only 2 columns."},
    {"an empty line between rows", "A,B\n\n1,2\n", "Row 2, column B: the row ends before it, with 1 value."},
    {"rows count, not lines", "A,B\n\"x\n\n\ny\",2\n1\n", "Row 3, column B: the row ends before it, with 1 value."},
    {"a stray quote", "A,B\n1,2\n3,4\"\n", "Row 3, column B: there is a quote inside"},
    {"a blank before a quote", "A,B\n1, \"2\"\n", "Row 2, column B: there is a quote inside"},
    {"a quote that is the last byte", "A,B\n1,\"", "Row 2, column B: the closing quote is missing."},
    {"a quote whose end is doubled", "A\n\"x\"\"", "Row 2, column A: the closing quote is missing."},
    {"text behind a quote", "A,B\n1,\"2\"x\n", "Row 2, column B: there is text behind"},
    {"a quote without end", "A,B\n1,\"2\n3,4\n", "Row 2, column B: the closing quote is missing."},
    {"no UTF-8", "A,B\n1,\xE9\n", "Row 2, column B: the value is no UTF-8 text."},
    {"no UTF-8 in the header", "A,\xC0\x80\n", "Row 1, column 2: the value is no UTF-8 text."},
    {"a character that the page lacks", "A\nxжx\n", "database of code page windows-1252: ж\n", {"--lenient"}},
    {"the same in a name", "A,ж\n", "Row 1, column 2: These characters"},
    {"a sign that the page lacks", "A\n~\\\n", "of code page shift_jis: ~\\\n", {"--code-page", "shift_jis"}},
    {"the character of the end mark", "A\n\xC3\xBF\n", "Row 2, column A: These characters", {"--lenient"}},
    {"NUL", std::string("A\nx\0y\n", 6), "windows-1252: U+0000\n", {"--lenient"}},
    {"a tab that hides a later field",
     "a,b,c,d,e,f,g,h,i,j\n1,2,3,\"x\ty\",5,6,7,8,9,10\n",
     "Row 2, column d: A tab in \"d\" would hide the field \"j\". Move \"d\" behind it or take the tab out.",
     {"--lenient"}},
    {"too many rows", "A\n" + Repeated("1\n", 65'532),
     "Row 65533: A database holds at most 65,531 records. Nothing was imported."},
    {"a column without a --field", "A,B\n1,2\n", "Row 1, column B: there is no --field of this name.",
     Fields({"A:text"})},
    {"no number", "A\n1\n1e5\n", "Row 3, column A: \"1e5\" is no number.\n", Fields({"A:number"})},
    {"no day", "A\n2023-02-29\n", "\"2023-02-29\" is no date.\n", Fields({"A:date"})},
    {"no order fits all dates, and the user's not this one", "A\n01/13/2004\n13/01/2004\n",
     "Row 3, column A: \"13/01/2004\" is no date in the order month, day, year;", Fields({"A:date"})},
    {"too many definitions", "A\n", "at most 20", Fields(std::vector<const char*>(21, "A:text"))},
    {"a name that is too long", "A\n1\n", "longer than 28", {"--name", "12345678901234567890123456789"}},
};

TEST_F(Import, RefusesWholeAndSaysWhere) { ExpectRefusals("new.pdb", kRefusals); }

TEST_F(Import, ReadsEveryKindOfCsv) {
    const std::pair<std::string, const char*> kTables[] = {
        {"\xEF\xBB\xBF\"a\"\n1\n", R"(["1"])"},
        {"a,b\r\nx,y\nz,\r\"\",w", R"(["x", "y"]["z", ""]["", "w"])"},
        {"a\n\nx\r\r", R"([""]["x"][""])"},  // in a table of one column an empty line is a value
        {"a,b\n\",\",\",,\"\n\"\"\"\",\"x\"\"\"\"y\"\n\"x\ny\r\nz\r\",\"\"\"z\"",
         R"([",", ",,"]["\"", "x\"\"y"]["x\ny\r\nz\r", "\"z"])"},
    };
    for (const auto& [table, stored] : kTables) {
        ASSERT_EQ(0, ImportTable(table, "t.pdb").status) << table;
        std::string rows = Stored("t.pdb");
        std::erase(rows, '\n');
        EXPECT_EQ(stored, rows);
        Remove("t.pdb");
    }
}

TEST_F(Import, AppendingIsAllOrNothing) {
    ImageParts parts;
    parts.AddSchema({"Name", "No"}, {"t", "I1;1"});
    parts.Add(2, {"Ann", "1"});
    parts.Add(9, {"of another program"});
    Write("t.pdb", parts);
    const std::vector<RefusalCase> refusals = {
        {"a column without a field", "Name,Due\nx,\n",
         "column Due: the database has no field of this name. It has \"Name"},
        {"a bad value in the last row", "Name,No\nx,2\ny,z\n", "Row 3, column No"},
        {"too many with those that are there", "Name\n" + Repeated("x\n", 65'531), "Row 65532: A data"},
        {"records of another program", "Name\nx\n", "Of the records in this file, 1 would not come back"},
        {"a name for what has one", "Name\nx\n", "--name", {"--name", "N"}, 2},
        {"fields for what has some", "Name\nx\n", "--field", Fields({"Name:text"}), 2},
        {"widths for what has some", "Name\nx\n", "--fit", {"--fit"}, 2},
    };
    ExpectRefusals("t.pdb", refusals);
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
    Write("t.pdb", parts);
    EXPECT_EQ("2 records, 1 values stored empty\n", ImportTable("No,Name\n-7,z\nx,a\n", "t.pdb", {"--lenient"}).out);
    EXPECT_EQ("[\"a\", \"\", \"false\", \"\"]\n[\"m\", \"1\", \"true\", \"\"]\n[\"z\", \"-7\", \"false\", \"\"]\n",
              Stored("t.pdb"));
    const auto next = [this] { return JsonOf({"fields", "t.pdb"})[1]["options"]["first"]; };
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
    const struct {
        const char* why;
        const char* dates;
        const char* stored;  // empty: refused
        std::vector<std::string> options = {};
    } kCases[] = {
        {"the only order that fits, month first", "03/07/2004\n03/13/2004", "[\"36591\"]\n[\"36597\"]\n"},
        {"the only order that fits, day first", "03.07.2004\n13.07.2004", "[\"36709\"]\n[\"36719\"]\n"},
        {"the user's when several fit", "03/07/2004", "[\"36591\"]\n"},
        {"the given one when several fit", "03/07/2004", "[\"36709\"]\n", {"--date-order", "dmy"}},
        {"the given one where it does not fit", "03/13/2004", "", {"--date-order", "dmy"}},
        {"ISO dates have no say", "2004-03-13\n03/07/2004", "[\"36597\"]\n[\"36709\"]\n", {"--date-order", "dmy"}},
        {"a blank before does not make it an ISO date", " 03/13/2004", "[\"36597\"]\n"},
        {"two digits of a year are of this century", "12/31/03", "[\"36524\"]\n"},
    };
    for (const auto& c : kCases) {
        std::vector<std::string> options = c.options;
        options.insert(options.end(), {"--field", "D:date"});
        const bool imported = ImportTable("D\n" + std::string(c.dates), "d.pdb", options).status == 0;
        EXPECT_EQ(c.stored, imported ? Stored("d.pdb") : "") << c.why;
        Remove("d.pdb");
    }
}

TEST_F(Import, InfersATypeOnlyWithoutADoubt) {
    const struct {
        const char* why;
        std::vector<const char*> values;
        const char* type;
        std::vector<std::string> options = {};
    } kCases[] = {
        {"numbers, and none", {"1", "-2.50", "", ".5", "0", "0.1"}, "number"},
        {"a leading zero may be part of a code", {"1", "007"}, "text"},
        {"thousands separated", {"1", "1,000"}, "text"},
        {"nothing at all", {"", ""}, "text"},
        {"true and false", {"True", "FALSE"}, "checkbox"},
        {"yes and no", {"yes", "No"}, "checkbox"},
        {"both", {"yes", "true"}, "text"},
        {"a third state", {"yes", ""}, "text"},
        {"0 and 1 are numbers", {"0", "1"}, "number"},
        {"ISO dates, and none", {"2004-03-07", "", "No Date"}, "date"},
        {"dates that one order fits", {"03/07/2004", "12/31/2004"}, "date"},
        {"dates that two orders fit", {"03/07/2004", "12/11/2004"}, "text"},
        {"unless the order is given", {"03/07/2004", "12/11/2004"}, "date", {"--date-order", "dmy"}},
        {"and does not fit", {"03/07/2004", "12/31/2004"}, "text", {"--date-order", "dmy"}},
        {"two digits of a year", {"12/31/04"}, "text"},
        {"a version", {"1.13.100"}, "text"},
        {"an impossible day", {"2004-03-07", "2004-02-30"}, "text"},
        {"times", {"09:30", "", "23:59", "No Time", "9:30 am", "10:00:00"}, "time"},
        {"seconds would get lost", {"09:30:01"}, "text"},
        {"a length", {"3:45"}, "text"},
        {"a date among words", {"2004-03-07", "soon"}, "text"},
        {"blanks", {" ", ""}, "text"},
    };
    for (const auto& c : kCases) {
        std::string table = "Other,C\n";
        for (const char* value : c.values) table += "x,\"" + std::string(value) + "\"\n";
        ASSERT_EQ(0, ImportTable(table, "t.pdb", c.options).status) << c.why;
        EXPECT_EQ(c.type, JsonOf({"fields", "t.pdb"})[1]["type"]) << c.why;
        Remove("t.pdb");
    }
}

TEST_F(Import, NamesAndWidths) {
    ASSERT_EQ(0, ImportTable("A,Twenty characters ..,C,D,E\nx,x,\"" + std::string(50, 'w') +
                                 "\nsecond\",2004-03-07,x\n1234567,,,,\n",
                             "A name that is much too long for it.pdb", {"--fit"})
                     .status);
    const Json info = JsonOf({"info", "A name that is much too long for it.pdb", "--json"});
    EXPECT_EQ("A name that is much too long", info["name"]);
    const int widths[] = {7 * 7, 20 * 7, 240, 10 * 7, 40};
    for (std::size_t k = 0; k < 5; ++k) EXPECT_EQ(widths[k], info["fields"][k]["width"]);

    ASSERT_EQ(0, ImportTable("B,A\n2,1\n", "o.pdb",
                             {"--name", " Zoë ", "--field", "C:checkbox", "--field", "A:text", "--field", "B:text"})
                     .status);
    EXPECT_EQ("B,A,C\r\n2,1,false\r\n", Output({"list", "o.pdb"})) << "the header's order, then what has no column";
    EXPECT_EQ("Zoë", JsonOf({"info", "o.pdb", "--json"})["name"]);
    EXPECT_EQ(80, JsonOf({"fields", "o.pdb"})[0]["width"]);
}

TEST_F(Import, APageWithoutABackslashReadsItsByteAsWhatItHas) {
    ASSERT_EQ(0, ImportTable("A\n\u00A5\u203E\nplain\n", "t.pdb", {"--code-page", "shift_jis"}).status);
    EXPECT_THAT(Read("t.pdb"), HasSubstr("\\~"));
    EXPECT_EQ("A\n\u00A5\u203E\nplain\n", Output({"list", "t.pdb", "--format", "tsv", "--code-page", "shift_jis"}));
}

TEST_F(Import, FillsADatabaseToTheLastRecord) {
    ASSERT_EQ(0, ImportTable("A\n" + Repeated("1\n", 65'531), "t.pdb").status);
    EXPECT_EQ("", Output({"check", "t.pdb"}));
    EXPECT_EQ(1, Qly({"record", "t.pdb", "add", "A=2"}).status);
    EXPECT_EQ("65531\n", Output({"find", "t.pdb", "1", "--after", "65530"}));
}

// What list prints with --iso, import reads back to the same stored texts, whatever order the user writes dates in.
TEST_F(Import, ReadsBackWhatListPrints) {
    const std::vector<std::string> texts = {"",    "a",        "\"",   ",", "a\r\nb",  "\r",     "a\nb",
                                            " x ", "\x80%d\\", "\"\"", "'", "\xE9,\"", "No Date"};
    const std::vector<std::string> columns[] = {texts,
                                                {"", "0", "-0.50", "007", ".5", "12345678901234567890"},
                                                {"", "0", "-7", "007"},
                                                {"false", "true"},
                                                {"", "0", "-1", "36500", "36597", "2957003", "-658800"},
                                                {"", "0", "60", "43200", "86340"},
                                                {"", "x", "\"y,\"", "z z"},
                                                {"", "5551234", "2125551234", "call 5551234", "555,1"},
                                                texts,
                                                texts};
    ::setenv("RC_PARAMS", "max_success=25", 0);
    EXPECT_TRUE(rc::check("import reads back what list prints", [&] {
        ImageParts parts;
        parts.AddSchema({"t", "n", "s", "c", "d", "h", "l", "p", "m", "w"},
                        {"t", "F", "I1;1", "B", "D", "d", "Lx;\"y,\";z z", "P", "M", "W"});
        for (int rows = *rc::gen::inRange(0, 8); rows > 0; --rows) {
            std::vector<std::string> record;
            for (const auto& column : columns) record.push_back(*rc::gen::elementOf(column));
            parts.Add(2, record);
        }
        Write("a.pdb", parts);
        Remove("b.pdb");
        std::vector<std::string> options = Fields({"t:text", "n:number", "s:sequence", "c:checkbox", "d:date", "h:time",
                                                   "l:list:x;\"y,\";z z", "p:phone", "m:e-mail", "w:web-url"});
        options.insert(options.end(), {"--date-order", *rc::gen::element("mdy", "dmy", "ymd")});
        RC_ASSERT(ImportTable(Output({"list", "a.pdb", "--iso"}), "b.pdb", options).err.empty());
        RC_ASSERT(Stored("b.pdb") == Stored("a.pdb"));
        RC_ASSERT(Qly({"check", "b.pdb"}).out.empty());
    }));
}

}  // namespace
}  // namespace quillary
