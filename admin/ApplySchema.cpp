#include "admin/ApplySchema.h"

#include <string>
#include <utility>

#include "admin/ConvertValue.h"
#include "db/RecordCommit.h"
#include "db/Utf.h"

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

std::string NameOf(const CQuillaryDoc& doc, const FieldDefinition& definition) {
    return doc.Page().ToUtf8(definition.field.name);
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
        }
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
    bool RebuildRecord(std::string_view entries) {
        m_entries.clear();
        if (!m_table.FillByWalking(entries, m_doc.FieldCount())) m_table.Fill(entries, m_doc.FieldCount());
        const std::size_t mostSize = 2 * entries.size() + kSmallRecord;
        for (std::size_t k = 0; k < m_definitions.size(); ++k) {
            const auto number = static_cast<std::uint8_t>(k);
            AppendEntry(m_entries, number, {});
            const std::size_t begin = m_entries.size();
            AppendValue(k);
            CheckHiding(k, std::string_view(m_entries).substr(begin));
            if (m_entries.size() > mostSize) return false;
        }
        return true;
    }

    void AppendValue(std::size_t k) {
        const auto from = m_definitions[k].from;
        if (!from) {
            if (m_definitions[k].field.type == FieldType::Checkbox) m_entries.append("false");
            return;
        }
        if (!m_table.Has(*from) && m_conversions[k].from != FieldType::Checkbox) return;
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

    // A byte that has hidden a field in the old place, too, hides nothing anew.
    void CheckHiding(std::size_t k, std::string_view text) {
        const auto from = m_definitions[k].from;
        if (!from || !FieldHiddenBy(text, k, m_definitions.size())) return;
        const std::string_view old = m_table.Text(*from);
        for (const char byte : text) {
            const auto number = static_cast<unsigned char>(byte);
            if (number <= k || number >= m_definitions.size()) continue;
            const bool hidBefore = number > *from && number < m_doc.FieldCount() && old.find(byte) != old.npos;
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
    EntryTable m_table;
    std::string m_entries;  // of the record at hand
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
    PreparedSchema prepared;
    prepared.rewritesRecords = !KeepsLayout(doc, definitions);
    if (prepared.rewritesRecords) {
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
    if (prepared.rewritesRecords) {
        doc.ReplaceAllRecords(std::move(prepared.shown), std::move(prepared.hidden), std::move(prepared.arena));
    }
    return true;
}

}  // namespace quillary
