#include "platform/posix/CodePages.h"

#include <gtest/gtest.h>

namespace quillary {
namespace {

TEST(CodePages, TextsGoBothWays) {
    struct Case {
        const char* name;
        const char* page;
        bool singleByte;
        std::string bytes;
        std::u16string text;
    };
    const Case kCases[] = {
        {"central European", "windows-1250", true, "\xA3\xF3\x64\x9F", u"Łódź"},
        {"Cyrillic by its number", "1251", true, "\xCF\xF0\xE8\xE2\xE5\xF2", u"Привет"},
        {"Greek by a short name in capitals", "CP1253", true, "\xC1\xE8\xDE\xED\xE1", u"Αθήνα"},
        {"a page that joins accents", "windows-1258", true, "Vi\xEAt", u"Viêt"},
        {"two bytes a character", "shift_jis", false, "\x8A\xBF\x8E\x9A kana \xB1", u"漢字 kana ｱ"},
        {"one to four bytes", "utf-8", false, "\xE2\x82\xAC\xF0\x9F\x8E\xAC", u"€🎬"},
    };
    for (const Case& c : kCases) {
        const auto page = CodePageByName(c.page);
        ASSERT_TRUE(page) << c.name;
        EXPECT_EQ(page->IsSingleByte(), c.singleByte) << c.name;
        EXPECT_EQ(page->ToWide(c.bytes), c.text) << c.name;
        EXPECT_EQ(page->FromWide(c.text), c.bytes) << c.name;
    }
}

TEST(CodePages, WhatAPageLacksIsNeverReplaced) {
    std::u16string unstorable;
    EXPECT_FALSE(CodePageByName("shift_jis")->FromWide(u"10 € für", &unstorable));
    EXPECT_EQ(unstorable, u"€ü");
    EXPECT_FALSE(CodePageByName("shift_jis")->FromWide(u"\\"));  // stored as what reads as a yen sign
    EXPECT_EQ(CodePageByName("shift_jis")->FromWideForHashing(u"漢ü"), "\x8A\xBF?");
    EXPECT_FALSE(CodePageByName("1251")->FromWide(u"я"));  // its byte would end the record
    EXPECT_FALSE(CodePageByName("1251")->FromWide(u"é"));
}

TEST(CodePages, WhichKeepAscii) {
    for (const char* name : {"windows-1252", "1251", "cp932", "euc-kr", "utf-8"}) {
        EXPECT_TRUE(CodePageByName(name)->KeepsAscii()) << name;
    }
    for (const char* name : {"shift_jis", "cp1361", "jis_x0201", "iso-2022-jp"}) {
        const auto page = CodePageByName(name);
        EXPECT_FALSE(page && page->KeepsAscii()) << name;
    }
}

TEST(CodePages, BrokenBytesShowWithoutTakingTheRestAlong) {
    EXPECT_EQ(CodePageByName("shift_jis")
                  ->ToWide("a\x8A\xBF\xFC"
                           "b\x8A"),
              u"a漢\uFFFDb\uFFFD");
    EXPECT_EQ(CodePageByName("1251")->ToWide("a\x98"
                                             "b"),
              u"a\uFFFDb");
    const std::string longText(3000, '\xB1');  // longer than one step of the conversion
    EXPECT_EQ(CodePageByName("shift_jis")->ToWide(longText), std::u16string(3000, u'ｱ'));
}

TEST(CodePages, EveryNameOfTheBuiltInPageGivesIt) {
    for (const char* name : {"windows-1252", "Windows-1252", "cp1252", "1252"}) {
        const auto page = CodePageByName(name);
        ASSERT_TRUE(page) << name;
        EXPECT_EQ(page->ToWide("\x80\x81"), u"€\u0081") << name;  // the system's own converter refuses the second
    }
}

TEST(CodePages, NamesThatNoDatabaseCanUse) {
    for (const char* name : {"", "nonsense", "65536", "utf-16", "utf-7", "ucs-4", "ebcdic-us", "cp1251//TRANSLIT",
                             "windows-1251//IGNORE", "../cp1251", "wchar_t"}) {
        EXPECT_FALSE(CodePageByName(name)) << name;
    }
}

}  // namespace
}  // namespace quillary
