#include "platform/posix/CodePages.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

TEST(CodePages, TextsGoBothWays) {
    const struct {
        const char* name;
        const char* page;
        bool singleByte;
        std::string bytes;
        std::u16string text;
    } kCases[] = {
        {"central European", "windows-1250", true, "\xA3\xF3\x64\x9F", u"Łódź"},
        {"Cyrillic by its number", "1251", true, "\xCF\xF0\xE8\xE2\xE5\xF2", u"Привет"},
        {"Greek by a short name in capitals", "CP1253", true, "\xC1\xE8\xDE\xED\xE1", u"Αθήνα"},
        {"a page that joins accents", "windows-1258", true, "Vi\xEAt", u"Viêt"},
        {"two bytes a character", "shift_jis", false, "\x8A\xBF\x8E\x9A kana \xB1", u"漢字 kana ｱ"},
        {"one to four bytes", "utf-8", false, "\xE2\x82\xAC\xF0\x9F\x8E\xAC", u"€🎬"},
    };
    for (const auto& c : kCases) {
        const auto page = CodePageByName(c.page);
        ASSERT_TRUE(page) << c.name;
        EXPECT_EQ(page->IsSingleByte(), c.singleByte) << c.name;
        EXPECT_EQ(page->ToWide(c.bytes), c.text) << c.name;
        EXPECT_EQ(page->FromWide(c.text), c.bytes) << c.name;
    }
}

TEST(CodePages, WhatAPageLacksIsNeverReplaced) {
    const auto page = CodePageByName("shift_jis");
    std::u16string unstorable;
    EXPECT_FALSE(page->FromWide(u"10 € für", &unstorable));
    EXPECT_EQ(unstorable, u"€ü");
    EXPECT_FALSE(page->FromWide(u"\\")) << "stored as what reads as a yen sign";
    EXPECT_EQ(page->FromWideForHashing(u"漢ü"), "\x8A\xBF?");
    EXPECT_FALSE(CodePageByName("1251")->FromWide(u"я")) << "its byte would end the record";
}

TEST(CodePages, BrokenBytesShowWithoutTakingTheRestAlong) {
    const auto page = CodePageByName("shift_jis");
    EXPECT_EQ(page->ToWide("z\x8A\xBF\xFCz\x8A"), u"z漢\uFFFDz\uFFFD");
    EXPECT_EQ(CodePageByName("1251")->ToWide("z\x98z"), u"z\uFFFDz");
    EXPECT_EQ(page->ToWide(std::string(3000, '\xB1')), std::u16string(3000, u'ｱ')) << "longer than one step";
}

TEST(CodePages, Names) {
    for (const char* name : {"Windows-1252", "cp1252", "1252"}) {
        EXPECT_EQ(CodePageByName(name)->ToWide("\x80\x81"), u"€\u0081") << "as the system's converter would not";
    }
    for (const char* name : {"", "nonsense", "65536", "utf-16", "utf-7", "ucs-4", "ebcdic-us", "cp1251//TRANSLIT",
                             "windows-1251//IGNORE", "../cp1251", "wchar_t"}) {
        EXPECT_FALSE(CodePageByName(name)) << name;
    }
}

}  // namespace
}  // namespace quillary
