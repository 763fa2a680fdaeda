#include "db/CellText.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

TEST(CellText, FirstLineAndDirectives) {
    struct Case {
        const char* name;
        std::string display;
        std::string cell;
    };
    const Case kCases[] = {
        {"plain", "Ann", "Ann"},
        {"first line", "one\r\ntwo", "one"},
        {"a lone CR ends it too", "one\rtwo", "one"},
        {"the row", "no. %d", "no. 42"},
        {"the row is taken once", "%d %d %u", "42  "},
        {"a percent sign", "100%%", "100%"},
        {"a percent sign does not take the row", "%%%d", "%42"},
        {"at the end", "100%", "100"},
        {"a string directive prints nothing", "%s%d", "42"},
        {"flags, width and precision", "%+06d|", "+00042|"},
        {"left", "%-6d|", "42    |"},
        {"precision beats zeros", "%06.3d|", "   042|"},
        {"hexadecimal", "%#X", "0X2A"},
        {"octal", "%#o", "052"},
        {"a character", "%c", "*"},
        {"length letters", "%lld %hu", "42 "},
        {"Microsoft's lengths", "%I64d", "42"},
        {"a flag that reads like prose", "100% done", "100 42one"},
        {"no letter: only the sign goes", "50%, say", "50, say"},
        {"a write directive", "%n%hhn", ""},
        {"a width of a million counts as 255", "%1000000d", std::string(253, ' ') + "42"},
        {"a precision of a million too", "%.1000000d", std::string(253, '0') + "42"},
        {"width and nothing", "%12", "12"},
        {"stars are no widths", "%*d", "*d"},
    };
    for (const auto& c : kCases) {
        std::string cell;
        AppendCellText(c.display, 42, cell);
        EXPECT_EQ(c.cell, cell) << c.name;
    }
    std::string zero;
    AppendCellText("%d%%", 0, zero);
    EXPECT_EQ("0%", zero) << "rows count from 0";
}

}  // namespace
}  // namespace quillary
