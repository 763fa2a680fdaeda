#include "db/Password.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

// Worked out by hand, modulo 2^32, for the database's parameters (seed 5087, multiplier 36529, subtrahend 17243):
//   "a"   h = 5087 * 36529 - 97 * 17243 + 97                   = 185823023 - 1672571 + 97  = 184150549
//   "ab"  h = 5087 * 36529 - 98 * 17243 + 97                   = 185823023 - 1689814 + 97  = 184133306
//         h = 184133306 * 36529 - 97 * 17243 + 98; 184133306 * 36529 = 6726205534874 = 1566 * 2^32 + 286749338,
//             so 286749338 - 1672571 + 98                      = 285076865
//   0xE9  counts as -23: h = 185823023 + 23 * 17243 - 23        = 185823023 + 396589 - 23   = 186219589
// and for the lock's (seed 6133, multiplier 81457, subtrahend 50621):
//   "a"   h = 6133 * 81457 - 97 * 50621 + 97                   = 499575781 - 4910237 + 97  = 494665641
//   "ab"  h = 6133 * 81457 - 98 * 50621 + 97                   = 499575781 - 4960858 + 97  = 494615020
//         h = 494615020 * 81457 - 97 * 50621 + 98; 494615020 * 81457 = 40289855684140 = 9380 * 2^32 + 3062447660,
//             so 3062447660 - 4910237 + 98                     = 3057537521
//   0xE9  h = 499575781 + 23 * 50621 - 23                      = 499575781 + 1164283 - 23  = 500740041
TEST(Password, HashesWorkedOutByHand) {
    const AnsiText& page = AnsiText::Windows1252();
    EXPECT_EQ(0u, HashPassword(kDatabasePassword, u"", page));
    EXPECT_EQ(184150549u, HashPassword(kDatabasePassword, u"a", page));
    EXPECT_EQ(285076865u, HashPassword(kDatabasePassword, u"ab", page));
    EXPECT_EQ(186219589u, HashPassword(kDatabasePassword, u"\u00E9", page));
    EXPECT_EQ(494665641u, HashPassword(kInfoLock, u"a", page));
    EXPECT_EQ(3057537521u, HashPassword(kInfoLock, u"ab", page));
    EXPECT_EQ(500740041u, HashPassword(kInfoLock, u"\u00E9", page));
}

TEST(Password, OnlyBytesOfThePageAndOnlyTheFirst255Count) {
    const AnsiText& page = AnsiText::Windows1252();
    EXPECT_EQ(HashPassword(kDatabasePassword, u"a?", page), HashPassword(kDatabasePassword, u"a\u0416", page));
    EXPECT_NE(HashPassword(kDatabasePassword, u"ab", page), HashPassword(kDatabasePassword, u"ba", page));
    const std::u16string longest(255, u'x');
    EXPECT_EQ(HashPassword(kDatabasePassword, longest, page), HashPassword(kDatabasePassword, longest + u"y", page));
    EXPECT_NE(HashPassword(kDatabasePassword, longest, page),
              HashPassword(kDatabasePassword, longest.substr(1) + u"y", page));
}

}  // namespace
}  // namespace quillary
