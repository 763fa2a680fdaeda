#include "integration/VCard.h"

#include <array>
#include <cstddef>
#include <cstdio>
#include <optional>
#include <span>

#include "db/Utf.h"
#include "integration/Contact.h"
#include "integration/ItemText.h"

namespace quillary {

namespace {

using Property = ContactProperty;

// A property that holds one text. Where the standard has none for it, the name is the one that Evolution shows.
struct TextProperty {
    Property property;
    std::string_view name;  // with its parameters
};
// Of several with the same name the first is the one that address books show first.
constexpr TextProperty kTextProperties[] = {
    {Property::JobTitle, "TITLE"},
    {Property::WorkPhone, "TEL;TYPE=WORK,VOICE"},
    {Property::WorkPhone2, "TEL;TYPE=WORK,VOICE"},
    {Property::WorkFax, "TEL;TYPE=WORK,FAX"},
    {Property::MobilePhone, "TEL;TYPE=CELL"},
    {Property::HomePhone, "TEL;TYPE=HOME,VOICE"},
    {Property::HomePhone2, "TEL;TYPE=HOME,VOICE"},
    {Property::HomeFax, "TEL;TYPE=HOME,FAX"},
    {Property::Pager, "TEL;TYPE=PAGER"},
    {Property::CarPhone, "TEL;TYPE=CAR"},
    {Property::RadioPhone, "TEL;TYPE=X-EVOLUTION-RADIO"},
    {Property::AssistantPhone, "TEL;TYPE=X-EVOLUTION-ASSISTANT"},
    {Property::EMail, "EMAIL;TYPE=INTERNET"},
    {Property::EMail2, "EMAIL;TYPE=INTERNET"},
    {Property::EMail3, "EMAIL;TYPE=INTERNET"},
    {Property::WebPage, "URL"},
    {Property::AssistantName, "X-EVOLUTION-ASSISTANT"},
    {Property::Spouse, "X-EVOLUTION-SPOUSE"},
    {Property::Children, "X-CHILDREN"},
    {Property::Notes, "NOTE"},
};

// A property of several parts with semicolons between them; not written when all are empty.
struct PartedProperty {
    std::string_view name;
    std::string_view ahead;  // parts that are always empty
    std::span<const Property> parts;
};
constexpr Property kNameParts[] = {Property::LastName, Property::FirstName, Property::MiddleName};
// The office is the third: the smallest unit of an organisation.
constexpr Property kCompanyParts[] = {Property::Company, Property::Department, Property::OfficeLocation};
constexpr Property kWorkParts[] = {Property::WorkStreet, Property::WorkCity, Property::WorkState,
                                   Property::WorkPostalCode, Property::WorkCountry};
constexpr Property kHomeParts[] = {Property::HomeStreet, Property::HomeCity, Property::HomeState,
                                   Property::HomePostalCode, Property::HomeCountry};
constexpr Property kOtherParts[] = {Property::OtherStreet, Property::OtherCity, Property::OtherState,
                                    Property::OtherPostalCode, Property::OtherCountry};
constexpr PartedProperty kPartedProperties[] = {
    {"ORG", "", kCompanyParts},
    {"ADR;TYPE=WORK", ";;", kWorkParts},
    {"ADR;TYPE=HOME", ";;", kHomeParts},
    {"ADR;TYPE=OTHER", ";;", kOtherParts},
};

// What can stand for a name that is missing, in this order; whatever else there is comes last.
constexpr Property kNameless[] = {Property::Company,   Property::EMail,       Property::EMail2,    Property::EMail3,
                                  Property::WorkPhone, Property::MobilePhone, Property::HomePhone, Property::WebPage,
                                  Property::JobTitle,  Property::Department};
constexpr std::string_view kNobody = "Unnamed";

constexpr std::string_view kBlanks = " \t\n";

std::string_view Trimmed(std::string_view text) {
    const auto start = text.find_first_not_of(kBlanks);
    if (start == text.npos) return {};
    return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

std::string Escaped(std::string_view text) {
    std::string out;
    for (const char c : text) {
        if (c == '\n') {
            out += "\\n";
            continue;
        }
        if (c == '\\' || c == ';' || c == ',') out += '\\';
        out += c;
    }
    return out;
}

class CardWriter {
  public:
    CardWriter(const Contact& contact, std::string_view uid) : m_contact(contact) {
        for (std::size_t k = 0; k < kContactProperties; ++k) m_texts[k] = PlainLines(contact.texts[k]);
        Line("BEGIN", "VCARD");
        Line("VERSION", "3.0");
        Line("UID", Escaped(uid));
    }

    std::string Write() {
        const std::string name = ListedName();
        Line("FN", Escaped(name));
        Line("N", Joined({"", "", kNameParts}) + ";;");  // prefixes and suffixes
        Line("X-EVOLUTION-FILE-AS", Escaped(FiledName(name)));
        for (const PartedProperty& property : kPartedProperties) {
            const std::string value = Joined(property);
            if (value.find_first_not_of(';') != value.npos) Line(property.name, value);
        }
        for (const TextProperty& row : kTextProperties) {
            if (!Text(row.property).empty()) Line(row.name, Escaped(Text(row.property)));
        }
        WriteCategories();
        WriteDay("BDAY", m_contact.birthday);
        WriteDay("X-EVOLUTION-ANNIVERSARY", m_contact.anniversary);
        Line("END", "VCARD");
        return std::move(m_card);
    }

  private:
    [[nodiscard]] const std::string& Text(Property property) const {
        return m_texts[static_cast<std::size_t>(property)];
    }

    [[nodiscard]] std::string ListedName() const {
        std::string name;
        for (const Property part : {Property::FirstName, Property::MiddleName, Property::LastName}) {
            const std::string_view text = Trimmed(Text(part));
            if (!name.empty() && !text.empty()) name += ' ';
            name += text;
        }
        if (!name.empty()) return name;
        for (const Property substitute : kNameless) {
            name = Trimmed(Text(substitute));
            if (!name.empty()) return name;
        }
        for (const std::string& text : m_texts) {
            name = Trimmed(text);
            if (!name.empty()) return name;
        }
        return std::string(kNobody);
    }

    // By what Evolution sorts: the last name first.
    [[nodiscard]] std::string FiledName(const std::string& listed) const {
        const std::string last(Trimmed(Text(Property::LastName)));
        const std::string first(Trimmed(Text(Property::FirstName)));
        return last.empty() || first.empty() ? listed : last + ", " + first;
    }

    [[nodiscard]] std::string Joined(const PartedProperty& property) const {
        std::string value(property.ahead);
        for (std::size_t k = 0; k < property.parts.size(); ++k) {
            if (k > 0) value += ';';
            value += Escaped(Text(property.parts[k]));
        }
        return value;
    }

    // The text is a list as people type it.
    void WriteCategories() {
        std::string value;
        std::string_view rest = Text(Property::Categories);
        while (!rest.empty()) {
            const auto end = rest.find_first_of(";,\n");
            const std::string_view category = Trimmed(rest.substr(0, end));
            if (!value.empty() && !category.empty()) value += ',';
            value += Escaped(category);
            rest = end == rest.npos ? std::string_view() : rest.substr(end + 1);
        }
        if (!value.empty()) Line("CATEGORIES", value);
    }

    void WriteDay(std::string_view name, const std::optional<double>& day) {
        if (!day) return;
        const CivilDate date = DateOfDay(*day);
        char text[sizeof "YYYY-MM-DD" + 16];
        std::snprintf(text, sizeof text, "%04d-%02d-%02d", static_cast<int>(date.year), date.month, date.day);
        Line(name, text);
    }

    // Folded so that no line has more than 75 bytes, never inside a character.
    void Line(std::string_view name, std::string_view value) {
        constexpr std::size_t kLongest = 75;
        const std::string line = std::string(name).append(":").append(value);
        std::string_view rest = line;
        std::size_t room = kLongest;
        while (rest.size() > room) {
            std::size_t end = room;
            while ((static_cast<unsigned char>(rest[end]) & 0xC0) == 0x80) --end;
            m_card.append(rest.substr(0, end)).append("\r\n ");
            rest.remove_prefix(end);
            room = kLongest - 1;  // the blank counts
        }
        m_card.append(rest).append("\r\n");
    }

    const Contact& m_contact;
    std::array<std::string, kContactProperties> m_texts;
    std::string m_card;
};

}  // namespace

std::string VCardText(const Contact& contact, std::string_view uid) { return CardWriter(contact, uid).Write(); }

}  // namespace quillary
