#include "ui/Mnemonics.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

TEST(Mnemonics, Marks) {
    const struct {
        const char* name;
        QStringList texts;
        QStringList marked;
    } kCases[] = {
        {"a later word gives its letter when the first is taken",
         {"Top of Database", "Tools"},
         {"&Top of Database", "T&ools"}},
        {"case does not make two letters of one", {"sort", "Send"}, {"&sort", "S&end"}},
        {"an ampersand of the text stays one", {"R & D", "R&D"}, {"&R && D", "R&&&D"}},
        {"nothing is left to mark", {"A", "a", "123", ""}, {"&A", "a", "123", ""}},
    };
    for (const auto& c : kCases) EXPECT_EQ(WithMnemonics(c.texts), c.marked) << c.name;
}

}  // namespace
}  // namespace quillary
