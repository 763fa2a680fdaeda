// What a reader of vCards does not show: how lines are folded, what is dropped, and the name that nobody gave.
#include "integration/VCard.h"

#include <gtest/gtest.h>

#include "db/Utf.h"
#include "integration/Contact.h"

namespace quillary {

namespace {

using Property = ContactProperty;
using namespace std::string_literals;

struct Given {
    Property property;
    std::u16string text;
};

std::string Card(const std::vector<Given>& given, std::optional<double> birthday = {}) {
    Contact contact;
    for (const Given& row : given) contact.texts[static_cast<std::size_t>(row.property)] = row.text;
    contact.birthday = birthday;
    return VCardText(contact, "u1");
}

TEST(VCard, LinesOfOneContact) {
    const struct {
        const char* why;
        std::vector<Given> given;
        std::string line;  // whole, that the card must have
    } kCases[] = {
        {"the name as it is spoken", {{Property::LastName, u"Ruiz"}, {Property::FirstName, u" Ana "}}, "FN:Ana Ruiz"},
        {"and as it is sorted",
         {{Property::LastName, u"Ruiz"}, {Property::FirstName, u"Ana"}},
         "X-EVOLUTION-FILE-AS:Ruiz\\, Ana"},
        {"a company has no name", {{Property::Company, u"A; B"}, {Property::EMail, u"x@y"}}, "FN:A\\; B"},
        {"nor has an address", {{Property::EMail3, u"x@y"}}, "FN:x@y"},
        {"nor has a note", {{Property::Notes, u"\r\n only this"}}, "FN:only this"},
        {"nothing at all", {{Property::LastName, u"  "}}, "FN:Unnamed"},
        {"blank names are not written over", {{Property::LastName, u"  "}}, "N:  ;;;;"},
        {"every line end is one", {{Property::Notes, u"a\r\nb\n\rc\rd\ne\n\nf"}}, "NOTE:a\\nb\\nc\\nd\\ne\\n\\nf"},
        {"what would end the value", {{Property::Notes, u"a;b,c\\d:e\"f"}}, "NOTE:a\\;b\\,c\\\\d:e\"f"},
        {"control characters but tabs", {{Property::Notes, u"a\0\x1b\x7f\tb"s}}, "NOTE:a\tb"},
        {"half a character", {{Property::Notes, u"a\xD800z"}}, "NOTE:a\xEF\xBF\xBDz"},
        {"a list that was typed", {{Property::Categories, u" a;b , ;c\n"}}, "CATEGORIES:a,b,c"},
        {"a later part alone", {{Property::Department, u"Sales"}}, "ORG:;Sales;"},
        {"the second telephone alone", {{Property::WorkPhone2, u"1"}}, "TEL;TYPE=WORK,VOICE:1"},
    };
    for (const auto& c : kCases) {
        EXPECT_NE(std::string::npos, Card(c.given).find("\r\n" + c.line + "\r\n")) << c.why << "\n" << Card(c.given);
    }
    EXPECT_EQ(std::string::npos, Card({{Property::Categories, u" ; "}}).find("CATEGORIES"));
}

TEST(VCard, DaysAreDates) {
    const struct {
        double day;
        const char* date;
    } kCases[] = {{0, "1899-12-30"},       {1462, "1904-01-01"},      {36526, "2000-01-01"}, {-657434, "0100-01-01"},
                  {2958465, "9999-12-31"}, {2958466.5, "9999-12-31"}, {-1e18, "0100-01-01"}};
    for (const auto& c : kCases) {
        EXPECT_NE(std::string::npos, Card({}, c.day).find(std::string("BDAY:") + c.date + "\r\n")) << c.day;
    }
}

// Unfolded, every text comes back, wherever the fold fell.
TEST(VCard, FoldsBetweenCharacters) {
    for (const char16_t* piece : {u"x", u"é", u"漢", u"\U0001F600", u"\n", u"a;"}) {
        for (int count = 60; count < 80; ++count) {
            std::u16string text;
            for (int k = 0; k < count; ++k) text += piece;
            const std::string card = Card({{Property::Notes, text}});
            std::string unfolded;
            for (std::size_t at = 0; at < card.size();) {
                const std::size_t end = card.find("\r\n", at);
                ASSERT_NE(std::string::npos, end);
                const std::string line = card.substr(at, end - at);
                EXPECT_LE(line.size(), 75U);
                EXPECT_TRUE(Utf8ToWide(line)) << line;
                unfolded += line.starts_with(" ") ? line.substr(1) : "\r\n" + line;
                at = end + 2;
            }
            std::string note = "\r\nNOTE:";
            for (int k = 0; k < count; ++k) {
                const std::u16string_view p = piece;
                note += p == u"\n" ? "\\n" : p == u"a;" ? "a\\;" : WideToUtf8(p);
            }
            EXPECT_NE(std::string::npos, unfolded.find(note + "\r\n")) << card;
        }
    }
}

}  // namespace

}  // namespace quillary
