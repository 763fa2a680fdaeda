// What a reader of vCards does not show: what is dropped, and the name that nobody gave.
#include "integration/VCard.h"

#include <gtest/gtest.h>

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
    const std::tuple<const char*, Property, std::u16string, std::string> kCases[] = {
        {"a name alone", Property::FirstName, u" Ana ", "FN:Ana"},
        {"a company has no name", Property::Company, u"A; B", "FN:A\\; B"},
        {"nor has a note", Property::Notes, u"\r\n only this", "FN:only this"},
        {"nothing at all", Property::LastName, u"  ", "FN:Unnamed"},
        {"blank names stay", Property::LastName, u"  ", "N:  ;;;;"},
        {"what would end the value", Property::Notes, u"a;b,c\\d:e\"f", "NOTE:a\\;b\\,c\\\\d:e\"f"},
        {"control characters but tabs", Property::Notes, u"a\0\x1b\x7f\tb"s, "NOTE:a\tb"},
        {"half a character", Property::Notes, u"a\xD800z", "NOTE:a\xEF\xBF\xBDz"},
        {"a list that was typed", Property::Categories, u" a;b , ;c\n", "CATEGORIES:a,b,c"},
        {"a later part alone", Property::Department, u"Sales", "ORG:;Sales;"},
    };
    for (const auto& [why, property, text, line] : kCases) {
        const std::string card = Card(property, text);
        EXPECT_NE(std::string::npos, card.find("\r\n" + line + "\r\n")) << why << "\n" << card;
    }
    EXPECT_EQ(std::string::npos, Card(Property::Categories, u" ; ").find("CATEGORIES"));
    Contact contact;
    contact.birthday = -1e18;
    EXPECT_NE(std::string::npos, VCardText(contact, "u1").find("\r\nBDAY:0100-01-01\r\n"));
}

}  // namespace
}  // namespace quillary
