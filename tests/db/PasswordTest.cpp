#include "db/Password.h"

#include <gtest/gtest.h>

#include <tuple>

namespace quillary {
namespace {

const AnsiText& kPage = AnsiText::Windows1252();

// Worked out by hand, modulo 2^32; each of n bytes gives h * multiplier - (byte n-1-i) * subtrahend + (byte i):
//   database  "a": 5087 * 36529 - 97 * 17243 + 97; "ab": 184133306 * 36529 - 97 * 17243 + 98
//   lock      "a": 6133 * 81457 - 97 * 50621 + 97; "ab": 494615020 * 81457 - 97 * 50621 + 98
// 0xE9 counts as -23.
TEST(Password, HashesWorkedOutByHand) {
    for (const auto& [text, database, lock] :
         {std::tuple{u"", 0u, 0u}, std::tuple{u"a", 184150549u, 494665641u}, std::tuple{u"ab", 285076865u, 3057537521u},
          std::tuple{u"\u00E9", 186219589u, 500740041u}}) {
        EXPECT_EQ(database, HashPassword(kDatabasePassword, text, kPage));
        EXPECT_EQ(lock, HashPassword(kInfoLock, text, kPage));
    }
}

TEST(Password, OnlyBytesOfThePageAndOnlyTheFirst255Count) {
    const auto hash = [](const std::u16string& text) { return HashPassword(kDatabasePassword, text, kPage); };
    const std::u16string longest(255, u'x');
    EXPECT_EQ(hash(u"a?"), hash(u"a\u0416"));
    EXPECT_EQ(hash(longest), hash(longest + u"y"));
    EXPECT_NE(hash(longest), hash(longest.substr(1) + u"y"));
}

}  // namespace
}  // namespace quillary
