#include "db/AnsiText.h"

#include <gtest/gtest.h>

#include <map>

namespace quillary {
namespace {

const AnsiText& kPage = AnsiText::Windows1252();

TEST(AnsiText, EveryByteComesBackAndOnlyThoseThatAnEndMarkNeedsAreRefused) {
    for (int b = 0; b < 256; ++b) {
        const std::string byte(1, static_cast<char>(b));
        const auto stored = kPage.FromWide(kPage.ToWide(byte));
        EXPECT_EQ(b == 0 || b == 0xFF ? std::nullopt : std::optional(byte), stored) << b;
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

TEST(AnsiText, EveryLetterAboveAsciiIsOneWithItsOtherCaseAlone) {
    std::map<int, std::string> alike;
    for (int b = 0x80; b < 0xFF; ++b) {
        const std::string byte(1, static_cast<char>(b));
        if (kPage.HasLetter(byte)) alike[kPage.Fold()[static_cast<std::size_t>(b)]] += byte;
    }
    std::string letters;
    for (const auto& [fold, bytes] : alike) letters += bytes + " ";
    EXPECT_EQ(
        "\x83 \x88 \x8A\x9A \x8C\x9C \x8E\x9E \x9F \xAA \xB5 \xBA \xC0\xE0 \xC1\xE1 \xC2\xE2 \xC3\xE3 \xC4\xE4 "
        "\xC5\xE5 \xC6\xE6 \xC7\xE7 \xC8\xE8 \xC9\xE9 \xCA\xEA \xCB\xEB \xCC\xEC \xCD\xED \xCE\xEE \xCF\xEF \xD0\xF0 "
        "\xD1\xF1 \xD2\xF2 \xD3\xF3 \xD4\xF4 \xD5\xF5 \xD6\xF6 \xD8\xF8 \xD9\xF9 \xDA\xFA \xDB\xFB \xDC\xFC \xDD\xFD "
        "\xDE\xFE \xDF ",
        letters);
}

TEST(AnsiText, CaseIsIgnoredOneToOne) {
    const std::tuple<const char*, const char*, char16_t, bool> kCases[] = {
        {"y with diaeresis above Latin-1", "\x9F", u'\u00FF', true},
        {"a micro sign is a Greek mu, which the page lacks", "\xB5", u'\u03BC', true},
        {"dotless i", "I", u'\u0131', true},
        {"a letter that the page lacks", "E", u'\u0404', false},
    };
    for (const auto& [name, a, b, same] : kCases) {
        const auto folded = kPage.FoldedBytes(std::u16string(1, b));
        EXPECT_EQ(same,
                  folded && kPage.Fold()[static_cast<unsigned char>(*a)] == static_cast<unsigned char>((*folded)[0]))
            << name;
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
