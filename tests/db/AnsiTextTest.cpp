#include "db/AnsiText.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

const AnsiText& kPage = AnsiText::Windows1252();

TEST(AnsiText, EveryByteComesBackAndOnlyThoseThatAnEndMarkNeedsAreRefused) {
    for (int b = 0; b < 256; ++b) {
        const std::string byte(1, static_cast<char>(b));
        const auto stored = kPage.FromWide(kPage.ToWide(byte));
        if (b == 0 || b == 0xFF) {
            EXPECT_FALSE(stored) << b;
        } else {
            EXPECT_EQ(byte, stored) << b;
        }
    }
}

TEST(AnsiText, Conversion) {
    EXPECT_EQ(u"\u20AC \u0178 \u0081 \u00E9", kPage.ToWide("\x80 \x9F \x81 \xE9"));
    EXPECT_EQ("caf\xC3\xA9 \xE2\x82\xAC", kPage.ToUtf8("caf\xE9 \x80"));
    std::u16string unstorable;
    EXPECT_FALSE(kPage.FromWide(u"a\u0416b\u00FF\u0416\U0001F600", &unstorable));
    EXPECT_EQ(u"\u0416\u00FF\U0001F600", unstorable) << "each once, a pair of surrogates as one character";
    EXPECT_EQ("a????", kPage.FromWideForHashing(std::u16string(u"a\u0416\u00FF\U0001F600\0", 6)));
}

TEST(AnsiText, CaseIsIgnoredOneToOne) {
    struct Case {
        const char* name;
        const char* a;
        char16_t b;
        bool same;
    };
    const Case kCases[] = {
        {"ASCII", "k", u'K', true},
        {"y with diaeresis above Latin-1", "\x9F", u'\u00FF', true},
        {"s with caron", "\x9A", u'\u0160', true},
        {"sharp s is no double s", "\xDF", u'S', false},
        {"a micro sign is a Greek mu, which the page lacks", "\xB5", u'\u03BC', true},
        {"a division sign is no multiplication sign", "\xF7", u'\u00D7', false},
        {"dotless i", "I", u'\u0131', true},
        {"a letter that the page lacks", "E", u'\u0404', false},
    };
    for (const auto& c : kCases) {
        const auto folded = kPage.FoldedBytes(std::u16string(1, c.b));
        const bool same =
            folded && kPage.Fold()[static_cast<unsigned char>(*c.a)] == static_cast<unsigned char>((*folded)[0]);
        EXPECT_EQ(c.same, same) << c.name;
    }
    EXPECT_EQ(u"STRA\u00DFE \u039C", AnsiText::Upper(u"stra\u00DFe \u00B5"));
}

TEST(AnsiText, PageWithHoles) {
    AnsiText::Table table{};
    table.fill(AnsiText::kNoCharacter);
    for (char16_t b = 0; b < 128; ++b) table[b] = b;
    table[0xC6] = u'\u0416';
    table[0xE6] = u'\u0436';
    const AnsiText cyrillic("test", table);
    EXPECT_EQ("\xEF\xBF\xBD\xD0\x96", cyrillic.ToUtf8("\x90\xC6")) << "a byte that is no character";
    EXPECT_EQ(cyrillic.Fold()[0xC6], cyrillic.Fold()[0xE6]);
    EXPECT_FALSE(cyrillic.FromWide(u"\uFFFD")) << "a hole must not be taken for the replacement character";
    EXPECT_TRUE(cyrillic.HasLetter("1\xE6"));
    EXPECT_FALSE(kPage.HasLetter("+1 (555) \xD7\x80"));
}

}  // namespace
}  // namespace quillary
