// What a reader of vCards does not show: how lines are folded, what is dropped, and the name that nobody gave.
#include "integration/VCard.h"

#include <gtest/gtest.h>

#include "db/Utf.h"
#include "integration/Contact.h"

namespace quillary {

namespace {

using Property = ContactProperty;
using namespace std::string_literals;

std::string Card(Property property, const std::u16string& text) {
    Contact contact;
    contact.texts[static_cast<std::size_t>(property)] = text;
    return VCardText(contact, "u1");
}

TEST(VCard, LinesOfOneContact) {
    const struct {
        const char* why;
        Property property;
        std::u16string text;
        std::string line;
    } kCases[] = {
        {"a name alone", Property::FirstName, u" Ana ", "FN:Ana"},
        {"a company has no name", Property::Company, u"A; B", "FN:A\\; B"},
        {"nor has a note", Property::Notes, u"\r\n only this", "FN:only this"},
        {"nothing at all", Property::LastName, u"  ", "FN:Unnamed"},
        {"blank names stay", Property::LastName, u"  ", "N:  ;;;;"},
        {"every line end is one", Property::Notes, u"a\r\nb\n\rc\rd\ne\n\nf", "NOTE:a\\nb\\nc\\nd\\ne\\n\\nf"},
        {"what would end the value", Property::Notes, u"a;b,c\\d:e\"f", "NOTE:a\\;b\\,c\\\\d:e\"f"},
        {"control characters but tabs", Property::Notes, u"a\0\x1b\x7f\tb"s, "NOTE:a\tb"},
        {"half a character", Property::Notes, u"a\xD800z", "NOTE:a\xEF\xBF\xBDz"},
        {"a list that was typed", Property::Categories, u" a;b , ;c\n", "CATEGORIES:a,b,c"},
        {"a later part alone", Property::Department, u"Sales", "ORG:;Sales;"},
    };
    for (const auto& c : kCases) {
        const std::string card = Card(c.property, c.text);
        EXPECT_NE(std::string::npos, card.find("\r\n" + c.line + "\r\n")) << c.why << "\n" << card;
    }
    EXPECT_EQ(std::string::npos, Card(Property::Categories, u" ; ").find("CATEGORIES"));
}

TEST(VCard, DaysAreDates) {
    const std::pair<double, std::string> kCases[] = {{0, "1899-12-30"},       {1462, "1904-01-01"},
                                                     {-657434, "0100-01-01"}, {2958465, "9999-12-31"},
                                                     {1e18, "9999-12-31"},    {-1e18, "0100-01-01"}};
    for (const auto& [day, date] : kCases) {
        Contact contact;
        contact.birthday = day;
        EXPECT_NE(std::string::npos, VCardText(contact, "u1").find("BDAY:" + date + "\r\n")) << day;
    }
}

TEST(VCard, FoldsBetweenCharacters) {
    for (const char16_t* piece : {u"x", u"é", u"漢", u"\U0001F600"}) {
        std::u16string text;
        for (int count = 1; count < 80; ++count) {
            text += piece;
            const std::string card = Card(Property::Notes, text);
            std::string unfolded;
            for (std::size_t at = 0, end = 0; (end = card.find("\r\n", at)) != std::string::npos; at = end + 2) {
                const std::string line = card.substr(at, end - at);
                EXPECT_TRUE(line.size() <= 75 && Utf8ToWide(line)) << line;
                unfolded += line.starts_with(" ") ? line.substr(1) : "\r\n" + line;
            }
            EXPECT_NE(std::string::npos, unfolded.find("\r\nNOTE:" + WideToUtf8(text) + "\r\n")) << card;
        }
    }
}

}  // namespace

}  // namespace quillary
