#include "cli/Csv.h"

#include <gtest/gtest.h>

namespace quillary {

namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows ReadAll(CsvReader& reader) {
    Rows rows;
    std::vector<CsvCell> cells;
    std::string buffer;
    while (reader.Next(cells)) {
        rows.emplace_back();
        for (const CsvCell& cell : cells) rows.back().emplace_back(cell.Value(buffer));
    }
    return rows;
}

struct Case {
    const char* why;
    std::string table;
    Rows rows;
};

// What it cannot read is told by the import, row and column and all.
const Case kCases[] = {
    {"nothing at all", "", {}},
    {"a byte-order mark alone", "\xEF\xBB\xBF", {}},
    {"a byte-order mark is no part of the first name", "\xEF\xBB\xBF\"a\"\n1\n", {{"a"}, {"1"}}},
    {"the last line end may be missing", "a,b\r\n1,2", {{"a", "b"}, {"1", "2"}}},
    {"LF", "a,b\n1,2\n", {{"a", "b"}, {"1", "2"}}},
    {"a lone CR", "a,b\r1,2\r", {{"a", "b"}, {"1", "2"}}},
    {"the three mixed", "a\r\n1\n2\r3", {{"a"}, {"1"}, {"2"}, {"3"}}},
    {"line breaks inside quotes stay as they are",
     "a,b\n\"x\ny\r\nz\r\",\"\n\"\n",
     {{"a", "b"}, {"x\ny\r\nz\r", "\n"}}},
    {"commas inside quotes", "a,b\n\",\",\",,\"", {{"a", "b"}, {",", ",,"}}},
    {"doubled quotes", "a\n\"\"\"\"\n\"x\"\"\"\"y\"\n\"\"\"z\"", {{"a"}, {"\""}, {"x\"\"y"}, {"\"z"}}},
    {"empty values, quoted or not", "a,b,c\n,\"\",\n", {{"a", "b", "c"}, {"", "", ""}}},
    {"in a table of one column an empty line is a value", "a\n\n1\n\n", {{"a"}, {""}, {"1"}, {""}}},
    {"an empty value behind the last comma", "a,b\n1,", {{"a", "b"}, {"1", ""}}},
    {"blanks are part of the value", " a , b\n", {{" a ", " b"}}},
    {"bytes beyond ASCII and NUL are left alone", std::string("a\n\xFF\0\n", 5), {{"a"}, {std::string("\xFF\0", 2)}}},
};

TEST(Csv, Reads) {
    for (const Case& c : kCases) {
        CsvReader reader(c.table, 20);
        EXPECT_EQ(c.rows, ReadAll(reader)) << c.why;
        EXPECT_EQ(CsvError::Kind::None, reader.Error().kind) << c.why;
    }
}

}  // namespace

}  // namespace quillary
