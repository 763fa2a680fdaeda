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
    SetHidesField(byte, WideToUtf8(doc.FieldName(field)), WideToUtf8(doc.FieldName(hidden)), failure);
    return false;
}

// The first entry of `changes` that the scan does not find in `entries`.
const Entry* FirstLost(std::string_view entries, std::span<const Entry> changes) {
    const auto lost = std::find_if(changes.begin(), changes.end(), [entries](const Entry& change) {
        return FindEntry(entries, change.number) != change.text;
    });
    return lost == changes.end() ? nullptr : &*lost;
}

// Names the text that stays and behind which the new one could not be found, in a file that another program made.
bool RefuseLost(const CQuillaryDoc& doc, std::string_view entries, std::uint8_t lost, Failure& failure) {
    const auto byte = static_cast<char>(lost);
    if (const auto walked = WalkEntries(entries)) {
        for (const Entry& entry : *walked) {
            if (entry.number == lost) break;
            if (entry.number >= doc.FieldCount() || entry.text.find(byte) == entry.text.npos) continue;
            return SetHides(doc, entry.number, byte, lost, failure);
        }
    }
    failure.Set(Message::OutOfOrder, {WideToUtf8(doc.FieldName(lost))});
    return false;
}

// The entries in order, when every field then reads as it did, or as `changes` say.
std::optional<std::string> OrderedEntries(const CQuillaryDoc& doc, std::string_view entries, std::string_view rewritten,
                                          std::span<const Entry> changes) {
    std::string ordered = InOrder(rewritten);
    if (FirstLost(ordered, changes)) return std::nullopt;
    for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
        const auto number = static_cast<std::uint8_t>(k);
        const bool isChanged = std::any_of(changes.begin(), changes.end(),
                                           [number](const Entry& change) { return change.number == number; });
        if (!isChanged && FindEntry(ordered, number) != FindEntry(entries, number)) return std::nullopt;
    }
    return ordered;
}

}  // namespace

void SetHidesField(char byte, std::string_view name, std::string_view hidden, Failure& failure) {
    failure.Set(Message::HidesField, {ByteName(byte), name, hidden, name, ByteName(byte)});
}

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
    auto rewritten = RewriteEntries(entries, changes, doc.FieldCount());
    if (!rewritten) {
        failure.Set(Message::TextsOverlap);
        return false;
    }
    if (const Entry* lost = FirstLost(*rewritten, changes)) {
        // Entry 0 is found in the first place alone, and another program may have put it elsewhere.
        auto ordered = OrderedEntries(doc, entries, *rewritten, changes);
        if (!ordered) return RefuseLost(doc, *rewritten, lost->number, failure);
        rewritten = std::move(ordered);
    }
    doc.ReplaceRecord(row, *rewritten);
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
