#include "cli/RecordCheck.h"

#include <algorithm>
#include <optional>

#include "cli/Text.h"
#include "cli/ValueEntry.h"
#include "db/FieldValue.h"

namespace quillary {

namespace {

// In entries of different numbers: one before each of them, and a number 0. A list of those in a hostile file, which
// may be nothing but NULs, would need many times its memory.
constexpr std::ptrdiff_t kMostNuls = 256 + 1;
constexpr std::string_view kCategoryNames[] = {"",         "FieldLabels", "data", "hidden data", "Preferences",
                                               "DataType", "FieldLengths"};

std::string Number(std::uint64_t number) { return std::to_string(number); }

std::string Name(std::uint8_t attributes) { return "The " + std::string(CategoryName(attributes)); }

bool IsDecimal(std::string_view text) { return std::to_string(ReadDecimal(text)) == text; }

}  // namespace

std::string_view CategoryName(std::uint8_t attributes) { return kCategoryNames[CategoryOf(attributes)]; }

std::string RecordCheck::Quoted(std::string_view text) const { return quillary::Quoted(ForMessage(text, m_page)); }

void RecordCheck::Check(std::string_view bytes, std::uint8_t attributes, bool counts) {
    CheckFrame(bytes, attributes);
    const std::string_view entries = EntriesOf(bytes.substr(kRecordHeader.size()));
    if (std::count(entries.begin(), entries.end(), '\0') > kMostNuls) {
        Report(OffsetOf(bytes), Name(attributes) + " record holds more entries than there are entry numbers");
        return;
    }
    const auto walked = WalkEntries(entries);
    if (!walked) {
        Report(OffsetOf(bytes), Name(attributes) + " record cannot be walked from entry to entry");
        return;
    }
    const bool isRow = IsRow(attributes);
    CheckEntryNumbers(*walked, attributes, isRow ? m_fields.size() : kMaxFields);
    CheckHiddenEntries(*walked, attributes);
    if (!isRow && counts) CheckSchemaEntries(*walked, attributes, OffsetOf(entries));
}

void RecordCheck::CheckFrame(std::string_view bytes, std::uint8_t attributes) {
    const std::string name = Name(attributes) + " record";
    if (bytes.substr(0, kRecordHeader.size()) != kRecordHeader) {
        Report(OffsetOf(bytes), name + " does not begin with a record header");
    }
    const auto mark = bytes.find('\xFF', kRecordHeader.size());
    if (mark == bytes.npos) {
        Report(OffsetOf(bytes), name + " has no end mark");
        return;
    }
    if (mark == kRecordHeader.size() || bytes[mark - 1] != '\0') {
        Report(OffsetOf(bytes) + mark, name + " ends at a byte FF inside a text");
    }
    if (mark + 1 < bytes.size()) {
        Report(OffsetOf(bytes) + mark + 1,
               name + " has " + Counted(bytes.size() - mark - 1, "byte") + " behind its end mark");
    }
}

void RecordCheck::CheckEntryNumbers(const std::vector<Entry>& entries, std::uint8_t attributes, std::size_t count) {
    int last = -1;
    for (const Entry& entry : entries) {
        const std::uint64_t at = OffsetOf(entry.text) - 1;
        const std::string name =
            "Entry " + Number(entry.number) + " of the " + std::string(CategoryName(attributes)) + " record ";
        if (entry.number == last) {
            Report(at, name + "is there twice");
        } else if (entry.number < last) {
            Report(at, name + "stands behind entry " + Number(static_cast<unsigned>(last)));
        }
        if (entry.number >= count && !m_fields.empty()) Report(at, name + "belongs to no field");
        last = entry.number;
    }
}

// How many entries of a record anybody looks for.
std::size_t RecordCheck::EntriesRead(std::uint8_t attributes) const {
    constexpr std::size_t kTextAndLock = 2;
    if (IsRow(attributes)) return m_fields.size();
    if (CategoryOf(attributes) == kCategoryPreferences) return kTextAndLock;
    if (CategoryOf(attributes) != kCategoryFieldLabels) return m_fields.size();
    return std::min(m_fields.size() + 1, kMaxFields);  // the empty name behind the last one, too
}

void RecordCheck::CheckHiddenEntries(const std::vector<Entry>& entries, std::uint8_t attributes) {
    const bool isRow = IsRow(attributes);
    const std::size_t count = EntriesRead(attributes);
    for (const Entry& entry : entries) {
        if (!FieldHiddenBy(entry.text, entry.number, count)) continue;
        const auto name = [&](std::size_t number) {
            return isRow ? "the field " + Quoted(m_fields[number].name) : "entry " + Number(number);
        };
        for (std::size_t hidden = entry.number + 1u; hidden < count; ++hidden) {
            const auto at = entry.text.find(static_cast<char>(hidden));
            if (at == entry.text.npos) continue;
            Report(OffsetOf(entry.text) + at,
                   "The byte " + Number(hidden) + " in " + name(entry.number) + " hides " + name(hidden));
        }
    }
}

void RecordCheck::CheckSchemaEntries(const std::vector<Entry>& entries, std::uint8_t attributes, std::uint64_t at) {
    const std::string name = Name(attributes) + " record";
    if (entries.size() != kMaxFields) {
        Report(at, name + " has not " + Number(kMaxFields) + " entries but " + Number(entries.size()));
    }
    for (const Entry& entry : entries) {
        switch (CategoryOf(attributes)) {
            case kCategoryDataType:
                CheckType(entry);
                break;
            case kCategoryFieldLabels:
                if (IsFiller(entry) && !entry.text.empty()) {
                    Report(OffsetOf(entry.text),
                           "The name " + Quoted(entry.text) + " stands behind an empty one, which ends the table");
                }
                break;
            case kCategoryFieldLengths:
                CheckWidth(entry);
                break;
            default:
                CheckPreference(entry);
                break;
        }
    }
    if (CategoryOf(attributes) == kCategoryFieldLabels && m_knowsFields && m_fields.empty()) {
        Report(at, "The table has no field");
    }
}

void RecordCheck::CheckType(const Entry& entry) {
    FieldType type{};
    FieldOptions options;
    DecodeFieldType(entry.text, type, options);
    const bool isFiller = IsFiller(entry);
    if (isFiller ? entry.text == kTypeFiller : EncodeFieldType(type, options) == entry.text) return;
    Report(OffsetOf(entry.text), "The type " + Quoted(entry.text) + " of field " + Number(entry.number + 1u) +
                                     (isFiller ? ", which is not there, is not \"T\""
                                               : " is unknown; it reads as " + std::string(InfoOf(type).name)));
}

void RecordCheck::CheckWidth(const Entry& entry) {
    const bool isFiller = IsFiller(entry);
    if (isFiller ? entry.text == kWidthFiller : IsDecimal(entry.text)) return;
    Report(OffsetOf(entry.text), "The width " + Quoted(entry.text) + " of field " + Number(entry.number + 1u) +
                                     (isFiller ? ", which is not there, is not \"80\"" : " is no number"));
}

void RecordCheck::CheckPreference(const Entry& entry) {
    if (entry.number == 1 && !IsDecimal(entry.text)) {
        Report(OffsetOf(entry.text), "The lock of the info text is no number: " + Quoted(entry.text));
    } else if (entry.number > 1 && !entry.text.empty()) {
        Report(OffsetOf(entry.text), "Entry " + Number(entry.number) + " of the Preferences record is not empty");
    }
}

}  // namespace quillary
