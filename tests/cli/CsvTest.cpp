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

struct ReadCase {
    const char* why;
    std::string table;
    Rows rows;
};

const ReadCase kRead[] = {
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
    for (const ReadCase& c : kRead) {
        CsvReader reader(c.table, 20);
        EXPECT_EQ(c.rows, ReadAll(reader)) << c.why;
        EXPECT_EQ(CsvError::Kind::None, reader.Error().kind) << c.why;
    }
}

struct ErrorCase {
    const char* why;
    std::string table;
    CsvError::Kind kind;
    std::size_t row;
    std::size_t column;
};

const ErrorCase kErrors[] = {
    {"a value too few", "a,b,c\n1,2,3\n1,2\n", CsvError::Kind::Ragged, 3, 2},
    {"values too many", "a,b\n1,2,3,4,5", CsvError::Kind::Ragged, 2, 3},
    {"an empty line between rows", "a,b\n\n1,2\n", CsvError::Kind::Ragged, 2, 1},
    {"rows count, not lines", "a,b\n\"x\n\n\ny\",2\n1\n", CsvError::Kind::Ragged, 3, 1},
    {"a header of more columns than a table may have", "a,b,c,d,e\n", CsvError::Kind::TooManyColumns, 1, 5},
    {"a quote in the middle", "a,b\n1,2\"\n", CsvError::Kind::QuoteInValue, 2, 2},
    {"a blank before a quote makes it one in the middle", "a,b\n1, \"2\"\n", CsvError::Kind::QuoteInValue, 2, 2},
    {"text behind a closing quote", "a,b\n\"1\"x,2\n", CsvError::Kind::TextAfterQuote, 2, 1},
    {"a blank behind a closing quote", "a,b\n\"1\" ,2\n", CsvError::Kind::TextAfterQuote, 2, 1},
    {"a quote that is never closed", "a,b\n1,2\n3,\"4,\n5,6\n", CsvError::Kind::MissingQuote, 3, 2},
    {"one that is the last byte", "a,b\n1,\"", CsvError::Kind::MissingQuote, 2, 2},
    {"one whose end is doubled", "a\n\"x\"\"", CsvError::Kind::MissingQuote, 2, 1},
};

TEST(Csv, SaysWhereItCannotRead) {
    for (const ErrorCase& c : kErrors) {
        CsvReader reader(c.table, 4);
        (void)ReadAll(reader);
        EXPECT_EQ(c.kind, reader.Error().kind) << c.why;
        EXPECT_EQ(c.row, reader.Error().row) << c.why;
        EXPECT_EQ(c.column, reader.Error().column) << c.why;
    }
}

}  // namespace

}  // namespace quillary
