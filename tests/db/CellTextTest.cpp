#include "db/CellText.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

TEST(CellText, FirstLineAndDirectives) {
    const std::tuple<const char*, std::string, std::string> kCases[] = {
        {"first line", "one\r\ntwo", "one"},
        {"a lone CR ends it too", "one\rtwo", "one"},
        {"the row is taken once", "%d %d %u", "42  "},
        {"a percent sign does not take the row", "%%%d", "%42"},
        {"at the end", "100%", "100"},
        {"flags, width and precision", "%+06d|", "+00042|"},
        {"left", "%-6d|", "42    |"},
        {"precision beats zeros", "%06.3d|", "   042|"},
        {"hexadecimal", "%#X", "0X2A"},
        {"octal", "%#o", "052"},
        {"a character", "%c", "*"},
        {"length letters", "%lld %hu", "42 "},
        {"longer ones", "%I64d", "42"},
        {"a flag that reads like prose", "100% done", "100 42one"},
        {"no letter: only the sign goes", "50%, say", "50, say"},
        {"a write directive", "%n%hhn", ""},
        {"a width of a million counts as 255", "%1000000d", std::string(253, ' ') + "42"},
        {"a precision of a million too", "%.1000000d", std::string(253, '0') + "42"},
        {"width and nothing", "%12", "12"},
        {"stars are no widths", "%*d", "*d"},
    };
    for (const auto& [name, display, cell] : kCases) {
        std::string shown;
        AppendCellText(display, 42, shown);
        EXPECT_EQ(cell, shown) << name;
    }
    std::string zero;
    AppendCellText("%d%%", 0, zero);
    EXPECT_EQ("0%", zero) << "rows count from 0";
}

}  // namespace
}  // namespace quillary
