#include "db/RecordCommit.h"

#include <algorithm>

#include "db/FieldValue.h"
#include "db/Utf.h"

namespace quillary {

namespace {

std::string_view ByteName(char byte) {
    switch (byte) {
        case '\n':
        case '\r':
            return "line break";
        case '\t':
            return "tab";
        default:
            return "control character";
    }
}

bool SetHides(const CQuillaryDoc& doc, std::size_t field, char byte, std::size_t hidden, Failure& failure) {
    const std::string name = WideToUtf8(doc.FieldName(field));
    failure.Set(Message::HidesField, {ByteName(byte), name, WideToUtf8(doc.FieldName(hidden)), name, ByteName(byte)});
    return false;
}

// Names the text behind which field `hidden` of `entries` cannot be found.
bool RefuseHidden(const CQuillaryDoc& doc, std::string_view entries, std::uint8_t hidden, Failure& failure) {
    std::size_t hiding = 0;
    if (const auto walked = WalkEntries(entries)) {
        const auto found = std::find_if(walked->begin(), walked->end(), [hidden](const Entry& entry) {
            return entry.text.find(static_cast<char>(hidden)) != entry.text.npos;
        });
        if (found != walked->end() && found->number < doc.FieldCount()) hiding = found->number;
    }
    return SetHides(doc, hiding, static_cast<char>(hidden), hidden, failure);
}

}  // namespace

std::optional<std::string> StoredText(const CQuillaryDoc& doc, std::size_t field, std::u16string_view typed,
                                      Failure& failure) {
    std::u16string unstorable;
    auto stored = doc.Page().FromWide(typed, &unstorable);
    if (!stored) {
        const std::string place = '"' + WideToUtf8(doc.FieldName(field)) + '"';
        failure.Set(Message::UnstorableCharacters, {place, WideToUtf8(unstorable)});
        return std::nullopt;
    }
    if (doc.TypeOf(field) == FieldType::Phone) return NormalizePhone(*stored, doc.Page());
    return stored;
}

std::string StoredCheckBox(bool checked) { return checked ? "true" : "false"; }

std::vector<std::string> NewRecordValues(const CQuillaryDoc& doc, const Clock& clock) {
    std::vector<std::string> values(doc.FieldCount());
    for (std::size_t k = 0; k < values.size(); ++k) {
        const FieldOptions& options = doc.Fields()[k].options;
        switch (doc.TypeOf(k)) {
            case FieldType::Sequence:
                values[k] = std::to_string(options.first);
                break;
            case FieldType::Checkbox:
                values[k] = StoredCheckBox(options.checked);
                break;
            case FieldType::Date:
                if (options.today) values[k] = std::to_string(clock.Today());
                break;
            case FieldType::Time:
                if (options.now) values[k] = std::to_string(clock.SecondsSinceMidnight() / 60 * 60);
                break;
            default:
                break;
        }
    }
    return values;
}

bool CheckHidesNothing(const CQuillaryDoc& doc, std::size_t field, std::string_view stored, Failure& failure) {
    const auto hidden = FieldHiddenBy(stored, field, doc.FieldCount());
    if (!hidden) return true;
    return SetHides(doc, field, hidden->byte, hidden->field, failure);
}

bool ReadsTheSame(const CQuillaryDoc& doc, std::size_t field, std::optional<std::string_view> present,
                  std::string_view stored) {
    const auto display = [&](std::string_view text) {
        return DisplayText(doc.TypeOf(field), text, doc.Style(), doc.Page());
    };
    if (!present) return stored.empty();
    return *present == stored || display(*present) == display(stored);
}

bool CommitRecord(CQuillaryDoc& doc, std::size_t row, std::span<const EnteredValue> values, bool& changed,
                  Failure& failure) {
    changed = false;
    const std::string_view entries = doc.Shown()[row].Entries();
    std::vector<Entry> changes;
    for (const EnteredValue& value : values) {
        const auto number = static_cast<std::uint8_t>(value.field);
        if (ReadsTheSame(doc, value.field, FindEntry(entries, number), value.stored)) continue;
        if (!CheckHidesNothing(doc, value.field, value.stored, failure)) return false;
        changes.push_back({number, value.stored});
    }
    if (changes.empty()) return true;
    std::sort(changes.begin(), changes.end(), [](const Entry& a, const Entry& b) { return a.number < b.number; });
    const std::string rewritten = RewriteEntries(entries, changes, doc.FieldCount());
    for (const Entry& change : changes) {
        // A text that stays may hide it already, in a file that another program made.
        if (FindEntry(rewritten, change.number) != change.text)
            return RefuseHidden(doc, rewritten, change.number, failure);
    }
    doc.ReplaceRecord(row, rewritten);
    changed = true;
    return true;
}

bool CommitNewRecord(CQuillaryDoc& doc, std::span<const std::string> values, Failure& failure) {
    std::string entries;
    for (std::size_t k = 0; k < values.size(); ++k) {
        if (!CheckHidesNothing(doc, k, values[k], failure)) return false;
        AppendEntry(entries, static_cast<std::uint8_t>(k), values[k]);
    }
    if (!doc.AppendRecord(entries, failure)) return false;
    doc.AdvanceSequences();
    return true;
}

}  // namespace quillary
