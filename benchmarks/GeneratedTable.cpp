#include "benchmarks/GeneratedTable.h"

#include <cstdint>
#include <cstdio>
#include <iterator>
#include <string_view>

#include "db/AnsiText.h"
#include "db/FieldValue.h"
#include "db/QuillaryDoc.h"

namespace quillary {

namespace {

enum Column : std::size_t { kItem, kNumber, kPrice, kInsured, kBought, kDelivered, kRoom, kPhone, kEMail, kNotes };
static_assert(kNotes + 1 == kGeneratedFields);

struct ColumnInfo {
    const char* name;
    FieldType type;
};
constexpr ColumnInfo kColumns[kGeneratedFields] = {
    {"Item", FieldType::Text},        {"Number", FieldType::Sequence},    {"Price", FieldType::Number},
    {"Insured", FieldType::Checkbox}, {"Bought", FieldType::Date},        {"Delivered", FieldType::Time},
    {"Room", FieldType::List},        {"Dealer phone", FieldType::Phone}, {"Dealer e-mail", FieldType::EMail},
    {"Notes", FieldType::Text},
};

constexpr std::string_view kRooms[] = {"Attic", "Bedroom", "Cellar",      "Garden",
                                       "Hall",  "Kitchen", "Living room", "Study"};
constexpr std::string_view kQualities[] = {"old",    "small", "walnut",  "silver", "large",   "painted", "green",
                                           "carved", "blue",  "leather", "brass",  "folding", "round",   "glass"};
constexpr std::string_view kThings[] = {"table",  "chair",   "lamp",   "clock",  "bookcase", "vase",   "mirror",
                                        "carpet", "picture", "teapot", "kettle", "camera",   "violin", "desk"};
constexpr std::string_view kPlaces[] = {"Reims", "Delft", "Turin", "Leeds", "Malm\xF6", "Z\xFCrich", "Lyon", "Oslo"};
constexpr std::string_view kSurnames[] = {"miller", "okafor", "rossi", "larsen", "dubois", "novak", "tanaka", "garcia"};
constexpr std::string_view kDomains[] = {"example.com", "antiques.example.org", "mail.example.net"};
constexpr std::string_view kSentences[] = {
    "Bought from the estate of a retired teacher.",
    "One leg was repaired; the mark is hardly seen.",
    "The dealer wrote \"as found\" on the bill.",
    "Needs a new cord, plug and switch.",
    "About 30% below the price asked.",
    "Caf\xE9 style, signed underneath.",
    "Stands at the window, out of the sun.",
    "Came with its key and a spare.",
    "Inherited in spring.",
    "Lent to a neighbour; ask for it again before the move.",
};

// Every row draws its own numbers, so that a row is the same whichever rows were made before it.
class Draw {
  public:
    explicit Draw(std::uint64_t row) : m_state(row * 0x9E3779B97F4A7C15 + 1904) {}
    /// 0 .. limit - 1
    std::uint32_t Below(std::uint32_t limit) {
        std::uint64_t mixed = m_state += 0x9E3779B97F4A7C15;
        mixed = (mixed ^ mixed >> 30) * 0xBF58476D1CE4E5B9;
        mixed = (mixed ^ mixed >> 27) * 0x94D049BB133111EB;
        return static_cast<std::uint32_t>((mixed ^ mixed >> 31) % limit);
    }
    bool OneIn(std::uint32_t n) { return Below(n) == 0; }
    template <std::size_t N>
    std::string Of(const std::string_view (&choices)[N]) {
        return std::string(choices[Below(N)]);
    }

  private:
    std::uint64_t m_state;
};

std::string Capitalized(std::string text) {
    text[0] = static_cast<char>(text[0] - ('a' - 'A'));
    return text;
}

std::string Notes(Draw& draw) {
    if (draw.Below(100) < 63) return {};
    std::string notes = draw.Of(kSentences);
    if (draw.OneIn(2)) return notes;
    const std::uint32_t more = 1 + draw.Below(4);
    for (std::uint32_t i = 0; i < more; ++i) notes += (draw.OneIn(3) ? "\r\n" : " ") + draw.Of(kSentences);
    return notes;
}

std::string CsvCell(FieldType type, const std::string& stored, const AnsiText& page) {
    char text[16];
    if (type == FieldType::Date && !stored.empty()) {
        const CivilDate date = DayToDate(ReadDecimal(stored));
        std::snprintf(text, sizeof text, "%04d-%02d-%02d", date.year % 10000, date.month % 100, date.day % 100);
        return text;
    }
    if (type == FieldType::Time && !stored.empty()) {
        const unsigned minutes = static_cast<unsigned>(ReadDecimal(stored)) / 60 % (24 * 60);
        std::snprintf(text, sizeof text, "%02u:%02u", minutes / 60, minutes % 60);
        return text;
    }
    const std::string utf8 = page.ToUtf8(stored);
    if (utf8.find_first_of(",\"\r\n") == utf8.npos) return utf8;
    std::string quoted = "\"";
    for (const char c : utf8) quoted.append(c == '"' ? 2 : 1, c);
    return quoted + '"';
}

}  // namespace

std::vector<Field> GeneratedFields() {
    std::vector<Field> fields(kGeneratedFields);
    for (std::size_t k = 0; k < fields.size(); ++k) {
        fields[k].name = kColumns[k].name;
        fields[k].type = kColumns[k].type;
    }
    fields[kRoom].options.items.assign(std::begin(kRooms), std::end(kRooms));
    return fields;
}

std::array<std::string, kGeneratedFields> GeneratedTexts(std::size_t row) {
    Draw draw(row);
    const auto number = [&draw](std::uint32_t limit) { return std::to_string(draw.Below(limit)); };
    std::array<std::string, kGeneratedFields> texts;
    texts[kItem] = Capitalized(draw.Of(kQualities)) + ' ' + draw.Of(kThings);
    if (draw.OneIn(2)) texts[kItem] += " from " + draw.Of(kPlaces);
    texts[kNumber] = std::to_string(row + 1);
    texts[kPrice] = number(4000) + (draw.OneIn(2) ? ".50" : ".00");
    texts[kInsured] = draw.OneIn(3) ? "true" : "false";
    if (!draw.OneIn(10)) texts[kBought] = std::to_string(30000 + draw.Below(14000));  // 1986 to 2024
    if (!draw.OneIn(5)) texts[kDelivered] = std::to_string((7 * 60 + draw.Below(12 * 60)) * 60);
    texts[kRoom] = draw.Of(kRooms);
    if (!draw.OneIn(8)) texts[kPhone] = std::to_string(2000000000u + draw.Below(2000000000u));
    texts[kEMail] = draw.Of(kSurnames) + number(1000) + '@' + draw.Of(kDomains);
    texts[kNotes] = Notes(draw);
    return texts;
}

bool WriteGeneratedDatabase(FileAccess& files, const Path& path, Failure& failure) {
    CQuillaryDoc doc(files);
    doc.NewDatabase("Household", GeneratedFields());
    std::string entries;
    for (std::size_t row = 0; row < kGeneratedRecords; ++row) {
        const auto texts = GeneratedTexts(row);
        entries.clear();
        for (std::size_t k = 0; k < texts.size(); ++k) AppendEntry(entries, static_cast<std::uint8_t>(k), texts[k]);
        if (!doc.AppendRecord(entries, failure)) return false;
    }
    return doc.SaveDatabaseAs(path, "Household", failure);
}

std::string GeneratedCsv() {
    const AnsiText& page = AnsiText::Windows1252();
    std::string csv;
    const auto separator = [](std::size_t k) { return k + 1 < kGeneratedFields ? "," : "\r\n"; };
    for (std::size_t k = 0; k < kGeneratedFields; ++k) csv.append(kColumns[k].name).append(separator(k));
    for (std::size_t row = 0; row < kGeneratedRecords; ++row) {
        const auto texts = GeneratedTexts(row);
        for (std::size_t k = 0; k < texts.size(); ++k) {
            csv.append(CsvCell(kColumns[k].type, texts[k], page)).append(separator(k));
        }
    }
    return csv;
}

std::string DefinitionText(const Field& field) {
    std::string definition = field.name + ':';
    definition += InfoOf(field.type).commandName;
    for (std::size_t i = 0; i < field.options.items.size(); ++i) {
        definition += (i == 0 ? ':' : ';') + field.options.items[i];
    }
    return definition;
}

}  // namespace quillary
