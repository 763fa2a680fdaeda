#include "admin/ApplySchema.h"

#include <array>
#include <numeric>
#include <string>
#include <utility>

#include "admin/ConvertValue.h"
#include "db/RecordCommit.h"
#include "db/Utf.h"
#include "query/Filter.h"
#include "query/Sort.h"

namespace quillary {

namespace {

// Texts that lie in each other do no harm apart up to this size.
constexpr std::size_t kSmallRecord = 1 << 20;

// Where records, fields and their order are the old ones, only names, widths and options change.
bool KeepsLayout(const CQuillaryDoc& doc, const std::vector<FieldDefinition>& definitions) {
    if (definitions.size() != doc.FieldCount()) return false;
    for (std::size_t k = 0; k < definitions.size(); ++k) {
        if (definitions[k].from != k || definitions[k].field.type != doc.TypeOf(k)) return false;
    }
    return true;
}

std::size_t SizeOf(const std::vector<RecordRef>& records) {
    return std::accumulate(records.begin(), records.end(), std::size_t{0},
                           [](std::size_t sum, const RecordRef& record) { return sum + record.size; });
}

std::string NameOf(const CQuillaryDoc& doc, const FieldDefinition& definition) {
    return doc.Page().ToUtf8(definition.field.name);
}

// The texts of the schema are found as a record's are. Those that a person can give hold no byte that hides another;
// what a file brought along may, at its new place.
bool CheckStored(std::vector<FieldDefinition>& definitions, Failure& failure) {
    const std::size_t count = definitions.size();
    for (std::size_t k = 0; k < count; ++k) {
        Field& field = definitions[k].field;
        // Behind the last name an empty one ends the fields, where there is room.
        if (FieldHiddenBy(field.name, k, std::min(count + 1, kMaxFields))) {
            failure.Set(Message::ControlCharacter, {"the name of a field"});
            return false;
        }
        if (FieldHiddenBy(StoredFieldType(field), k, count)) {
            failure.Set(Message::ControlCharacter, {"the items or the type of a field"});
            return false;
        }
        if (field.storedWidth && FieldHiddenBy(*field.storedWidth, k, count)) field.storedWidth.reset();
    }
    return true;
}

class Rebuilder {
  public:
    Rebuilder(const CQuillaryDoc& doc, const std::vector<FieldDefinition>& definitions, int century,
              PreparedSchema& prepared)
        : m_doc(doc), m_definitions(definitions), m_prepared(prepared) {
        for (const FieldDefinition& definition : definitions) {
            const FieldType to = definition.field.type;
            const FieldType from = definition.from ? doc.TypeOf(*definition.from) : to;
            m_conversions.push_back({to, from, definition.convertFrom, century, doc.Style()});
            m_kept.push_back(definition.from && KeepsEveryValue(to, from));
        }
        FindRuns();
    }

    // False when the record's texts cannot be taken apart.
    bool Rebuild(const std::vector<RecordRef>& records, std::vector<RecordRef>& rebuilt) {
        rebuilt.reserve(records.size());
        for (const RecordRef& record : records) {
            if (!RebuildRecord(record.Entries())) return false;
            rebuilt.push_back(
                {m_prepared.arena.Store(m_entries), static_cast<std::uint32_t>(m_entries.size()), record.category});
        }
        return true;
    }

    // Whether no text hides a field that it did not hide before.
    [[nodiscard]] bool HidesNothing(Failure& failure) const {
        if (m_hiding == 0) return true;
        failure.Set(Message::WouldHideFields, {std::to_string(m_hiding), m_firstHiding.text});
        return false;
    }

  private:
    // Most changes leave most fields where they are; these are copied together.
    void FindRuns() {
        for (std::size_t k = m_definitions.size(); k-- > 0;) {
            const auto isNext = [&](const auto& ends) { return k + 1 < m_definitions.size() && ends[k + 1] != kNoRun; };
            const bool stays = m_definitions[k].from == k;
            const bool isText = m_conversions[k].from == FieldType::Text || m_conversions[k].from == FieldType::List;
            const FieldType to = m_conversions[k].to;
            const bool staysText =
                stays && isText && to != FieldType::Date && to != FieldType::Time && to != FieldType::Checkbox;
            if (stays && m_kept[k]) m_runs[k] = isNext(m_runs) ? m_runs[k + 1] : k;
            if ((stays && m_kept[k]) || staysText)
                m_runsOfOneLine[k] = isNext(m_runsOfOneLine) ? m_runsOfOneLine[k + 1] : k;
        }
    }

    bool RebuildRecord(std::string_view entries) {
        m_entries.clear();
        const bool isWalked = m_table.FillByWalking(entries, m_doc.FieldCount());
        if (!isWalked) m_table.Fill(entries, m_doc.FieldCount());
        // A text without line ends shows as it is stored.
        const Runs& runs = isWalked && !HasLineFeed(entries) ? m_runsOfOneLine : m_runs;
        const std::size_t mostSize = 2 * entries.size() + kSmallRecord;
        for (std::size_t k = 0; k < m_definitions.size(); ++k) {
            if (isWalked && runs[k] != kNoRun && m_table.Has(k)) {
                std::size_t last = runs[k];
                m_entries.append(m_table.Run(k, last));
                k = last;
                continue;
            }
            AppendEntry(m_entries, static_cast<std::uint8_t>(k), {});
            AppendValue(k);
            if (m_entries.size() > mostSize) return false;
        }
        const std::size_t count = m_definitions.size();
        if (CountBytesBelow(m_entries, static_cast<std::uint8_t>(count)) != 2 * count) CheckHiding();
        return true;
    }

    // In a text of the record that m_table holds.
    [[nodiscard]] bool HasLineFeed(std::string_view entries) const {
        auto at = entries.find('\n');
        const bool isNumber = at != entries.npos && m_doc.FieldCount() > '\n' && m_table.Has('\n') &&
                              m_table.Text('\n').data() == entries.data() + at + 1;
        if (isNumber) at = entries.find('\n', at + 1);
        return at != entries.npos;
    }

    void CheckHiding() {
        EntryTable rebuilt;
        if (!rebuilt.FillByWalking(m_entries, m_definitions.size())) return;
        for (std::size_t k = 0; k < m_definitions.size(); ++k) CheckHiding(k, rebuilt.Text(k));
    }

    void AppendValue(std::size_t k) {
        const auto from = m_definitions[k].from;
        if (m_kept[k]) {
            m_entries.append(m_table.Text(*from));
            return;
        }
        if (!from) {
            if (m_definitions[k].field.type == FieldType::Checkbox) m_entries.append("false");
            return;
        }
        // What is missing is empty, but a check box that is missing is not checked.
        const bool isCounted = m_conversions[k].to == FieldType::Number || m_conversions[k].to == FieldType::Sequence;
        if (!m_table.Has(*from) && !(isCounted && m_conversions[k].from == FieldType::Checkbox)) return;
        switch (AppendConverted(m_conversions[k], m_table.Text(*from), m_doc.Page(), m_entries)) {
            case Converted::Kept:
                break;
            case Converted::Emptied:
                ++m_prepared.emptied;
                break;
            case Converted::Unchecked:
                ++m_prepared.unchecked;
                break;
        }
    }

    // A field that this text has hidden in its old place, too, is not hidden anew.
    void CheckHiding(std::size_t k, std::string_view text) {
        const auto from = m_definitions[k].from;
        if (!from || !FieldHiddenBy(text, k, m_definitions.size())) return;
        const std::string_view old = m_table.Text(*from);
        for (const char byte : text) {
            const auto number = static_cast<unsigned char>(byte);
            if (number <= k || number >= m_definitions.size()) continue;
            const auto hidden = m_definitions[number].from;
            const bool hidBefore =
                hidden && *hidden > *from && old.find(static_cast<char>(*hidden)) != std::string_view::npos;
            if (hidBefore) continue;
            if (m_hiding++ == 0) {
                SetHidesField(byte, NameOf(m_doc, m_definitions[k]), NameOf(m_doc, m_definitions[number]),
                              m_firstHiding);
            }
            return;
        }
    }

    const CQuillaryDoc& m_doc;
    const std::vector<FieldDefinition>& m_definitions;
    PreparedSchema& m_prepared;
    std::vector<Conversion> m_conversions;
    std::vector<char> m_kept;  // whether the values stay as they are; no vector of bits, which is slow to ask
    EntryTable m_table;
    std::string m_entries;  // of the record at hand
    // By field: the last of those from it on that stay where and as they are.
    using Runs = std::array<std::size_t, kMaxFields>;
    static constexpr std::size_t kNoRun = kMaxFields;
    Runs m_runs = NoRuns();
    Runs m_runsOfOneLine = NoRuns();  // in a record without line feeds
    static constexpr Runs NoRuns() {
        Runs runs{};
        runs.fill(kNoRun);
        return runs;
    }
    std::size_t m_hiding = 0;
    Failure m_firstHiding;
};

}  // namespace

std::vector<FieldDefinition> DefinitionsOf(const CQuillaryDoc& doc) {
    std::vector<FieldDefinition> definitions;
    for (std::size_t k = 0; k < doc.FieldCount(); ++k) definitions.push_back({doc.Fields()[k], k});
    return definitions;
}

std::optional<PreparedSchema> PrepareSchema(const CQuillaryDoc& doc, std::vector<FieldDefinition> definitions,
                                            int century, Failure& failure) {
    if (definitions.empty()) {
        failure.Set(Message::NoColumns);
        return std::nullopt;
    }
    if (definitions.size() > kMaxFields) {
        failure.Set(Message::TooManyFields);
        return std::nullopt;
    }
    if (!CheckStored(definitions, failure)) return std::nullopt;
    PreparedSchema prepared;
    prepared.rewritesRecords = !KeepsLayout(doc, definitions);
    if (prepared.rewritesRecords) {
        prepared.arena.Reserve(SizeOf(doc.Shown()) + SizeOf(doc.Hidden()));
        Rebuilder rebuilder(doc, definitions, century, prepared);
        if (!rebuilder.Rebuild(doc.Shown(), prepared.shown) || !rebuilder.Rebuild(doc.Hidden(), prepared.hidden)) {
            failure.Set(Message::TextsOverlap);
            return std::nullopt;
        }
        if (!rebuilder.HidesNothing(failure)) return std::nullopt;
    }
    for (FieldDefinition& definition : definitions) prepared.fields.push_back(std::move(definition.field));
    return prepared;
}

bool ApplySchema(CQuillaryDoc& doc, PreparedSchema prepared) {
    if (!prepared.rewritesRecords && prepared.fields == doc.Fields()) return false;
    doc.SetFields(std::move(prepared.fields));
    // As after a save: a field that later gets the name of one that is gone does not revive what was set for it.
    doc.SetSort(KeysInUse(doc));
    doc.SetFilter(EffectiveFilter(doc));
    if (prepared.rewritesRecords) {
        doc.ReplaceAllRecords(std::move(prepared.shown), std::move(prepared.hidden), std::move(prepared.arena));
    }
    return true;
}

}  // namespace quillary
