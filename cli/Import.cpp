#include "cli/Import.h"

#include <algorithm>
#include <limits>

#include "cli/ColumnTypes.h"
#include "cli/Session.h"
#include "cli/TableReader.h"
#include "cli/Text.h"
#include "cli/ValueEntry.h"
#include "db/FieldValue.h"
#include "db/RecordCommit.h"
#include "db/Utf.h"
#include "query/Sort.h"

namespace quillary {

namespace {

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

std::optional<std::vector<Field>> DefinedFields(const TableReader& reader, const std::vector<Field>& definitions,
                                                std::string& error) {
    std::vector<Field> fields;
    std::vector<Field> left = definitions;
    for (std::size_t column = 0; column < reader.Names().size(); ++column) {
        const std::string& name = reader.Names()[column];
        const auto found =
            std::find_if(left.begin(), left.end(), [&name](const Field& field) { return field.name == name; });
        if (found == left.end()) {
            error = reader.AtColumn(column, "there is no --field of this name.");
            return std::nullopt;
        }
        fields.push_back(std::move(*found));
        left.erase(found);
    }
    std::move(left.begin(), left.end(), std::back_inserter(fields));
    return fields;
}

std::optional<std::vector<Field>> GuessedFields(TableReader& reader, const ImportRules& rules, Progress& progress,
                                                std::string& error) {
    std::vector<ColumnTypeGuess> guesses(reader.Names().size());
    while (reader.NextRow()) {
        for (std::size_t column = 0; column < guesses.size(); ++column) {
            const auto value = reader.Value(column);
            if (!value) break;
            guesses[column].Add(*value);
        }
        if (!reader.Error().empty()) break;
        progress.At(reader.Position());
    }
    error = reader.Error();
    if (!error.empty()) return std::nullopt;
    std::vector<Field> fields(guesses.size());
    for (std::size_t column = 0; column < fields.size(); ++column) {
        fields[column].name = reader.Names()[column];
        fields[column].type = guesses[column].Type(rules.givenOrder);
    }
    return fields;
}

class Importer {
  public:
    Importer(CQuillaryDoc& doc, const ImportRules& rules, ImportResult& result, std::string& error)
        : m_doc(doc), m_rules(rules), m_result(result), m_error(error), m_columns(doc.FieldCount()) {}

    bool Run(std::string_view table, Progress& progress) {
        TableReader reader(table, m_rules.page);
        if (!reader.ReadHeader()) return FailWith(reader.Error());
        if (!MatchColumns(reader) || !FindDateOrders(table, progress)) return false;
        while (reader.NextRow()) {
            if (!AppendRow(reader)) return false;
            progress.At(reader.Position());
        }
        if (!reader.Error().empty()) return FailWith(reader.Error());
        MoveSequences();
        if (m_rules.fit) FitWidths();
        SortRecords(m_doc);
        return true;
    }

  private:
    // What is known of a field while its column is read.
    struct Column {
        std::size_t inTable = kNone;
        DateOrder order{};
        std::int32_t highest = std::numeric_limits<std::int32_t>::min();
        bool anyNumber = false;
        std::size_t longest = 0;  // characters of its longest first line
    };

    bool FailWith(std::string error) {
        m_error = std::move(error);
        return false;
    }

    bool MatchColumns(const TableReader& reader) {
        for (std::size_t column = 0; column < reader.Names().size(); ++column) {
            const auto field = m_doc.FieldByName(reader.Names()[column]);
            if (!field) {
                return FailWith(reader.AtColumn(
                    column, "the database has no field of this name. It has " + FieldList(m_doc) + "."));
            }
            m_columns[*field].inTable = column;
        }
        return true;
    }

    bool FindDateOrders(std::string_view table, Progress& progress) {
        std::vector<ColumnDateOrder> orders(m_columns.size());
        std::vector<std::size_t> unknown;
        for (std::size_t k = 0; k < m_columns.size(); ++k) {
            m_columns[k].order = m_rules.givenOrder.value_or(m_rules.userOrder);
            const bool asked = m_doc.TypeOf(k) == FieldType::Date && m_columns[k].inTable != kNone;
            if (asked && !m_rules.givenOrder) unknown.push_back(k);
        }
        if (unknown.empty()) return true;
        TableReader reader(table, m_rules.page);
        if (!reader.ReadHeader()) return FailWith(reader.Error());
        while (reader.NextRow()) {
            for (const std::size_t k : unknown) {
                const auto value = reader.Value(m_columns[k].inTable);
                if (!value) return FailWith(reader.Error());
                orders[k].Add(*value, m_rules.century);
            }
            progress.At(reader.Position());
        }
        if (!reader.Error().empty()) return FailWith(reader.Error());
        for (const std::size_t k : unknown) m_columns[k].order = orders[k].Order().value_or(m_rules.userOrder);
        return true;
    }

    bool AppendRow(TableReader& reader) {
        m_entries.clear();
        for (std::size_t k = 0; k < m_columns.size(); ++k) {
            AppendEntry(m_entries, static_cast<std::uint8_t>(k), {});
            const std::size_t begin = m_entries.size();
            if (!AppendValue(reader, k)) return false;
            const std::string_view stored = std::string_view(m_entries).substr(begin);
            Failure hidden;
            if (!CheckHidesNothing(m_doc, k, stored, hidden)) {
                return FailWith(reader.AtColumn(m_columns[k].inTable, hidden.text));
            }
            Note(k, stored);
        }
        Failure failure;
        if (!m_doc.HasRoomFor(1)) {
            failure.Set(Message::TooManyRecords, {"Nothing was imported."});
            return FailWith(reader.AtRow(failure.text));
        }
        ++m_result.records;
        return m_doc.AppendRecord(m_entries, failure) || FailWith(failure.text);
    }

    bool AppendValue(TableReader& reader, std::size_t k) {
        const Field& field = m_doc.Fields()[k];
        if (m_columns[k].inTable == kNone) {
            m_entries += EmptyValue(field.type);
            return true;
        }
        const auto value = reader.Value(m_columns[k].inTable);
        if (!value) return FailWith(reader.Error());
        const EntryRules rules{m_rules.page, m_columns[k].order, m_rules.century};
        const Message refusal = AppendStoredValue(field, *value, rules, m_entries);
        if (refusal == Message::None) return true;
        if (!m_rules.lenient) {
            return FailWith(reader.AtColumn(m_columns[k].inTable, RefusalText(refusal, *value, rules)));
        }
        m_entries += EmptyValue(field.type);
        ++m_result.emptied;
        return true;
    }

    void Note(std::size_t k, std::string_view stored) {
        Column& column = m_columns[k];
        const FieldType type = m_doc.TypeOf(k);
        if (type == FieldType::Sequence && !stored.empty()) {
            column.highest = std::max(column.highest, ReadDecimal(stored));
            column.anyNumber = true;
        }
        if (!m_rules.fit) return;
        m_display.clear();
        m_doc.AppendDisplay(stored, k, m_display);
        column.longest = std::max(column.longest, CharactersInFirstLine(m_display));
    }

    std::size_t CharactersInFirstLine(std::string_view text) const {
        text = text.substr(0, text.find_first_of("\r\n"));
        return m_rules.page.IsSingleByte() ? text.size() : m_rules.page.ToWide(text).size();
    }

    void MoveSequences() {
        for (std::size_t k = 0; k < m_columns.size(); ++k) {
            if (!m_columns[k].anyNumber) continue;
            const FieldOptions& options = m_doc.Fields()[k].options;
            const std::int64_t next = std::int64_t{m_columns[k].highest} + options.increment;
            const std::int64_t limit = std::numeric_limits<std::int32_t>::max();
            if (next > options.first) m_doc.SetSequenceNext(k, static_cast<std::int32_t>(std::min(next, limit)));
        }
    }

    void FitWidths() {
        constexpr std::size_t kPixelsACharacter = 7;
        constexpr std::size_t kNarrowest = 40;
        constexpr std::size_t kWidest = 240;
        for (std::size_t k = 0; k < m_columns.size(); ++k) {
            const std::size_t longest = std::max(m_columns[k].longest, CharactersInFirstLine(m_doc.Fields()[k].name));
            const std::size_t pixels = std::clamp(longest * kPixelsACharacter, kNarrowest, kWidest);
            m_doc.SetFieldWidth(k, static_cast<std::int32_t>(pixels));
        }
    }

    CQuillaryDoc& m_doc;
    const ImportRules& m_rules;
    ImportResult& m_result;
    std::string& m_error;
    std::vector<Column> m_columns;  // by field
    std::string m_entries;
    std::string m_display;
};

}  // namespace

std::optional<std::vector<Field>> FieldsForTable(std::string_view table, const std::vector<Field>& definitions,
                                                 const ImportRules& rules, Progress& progress, std::string& error) {
    TableReader reader(table, rules.page);
    if (!reader.ReadHeader()) {
        error = reader.Error();
        return std::nullopt;
    }
    return definitions.empty() ? GuessedFields(reader, rules, progress, error)
                               : DefinedFields(reader, definitions, error);
}

bool ImportTable(CQuillaryDoc& doc, std::string_view table, const ImportRules& rules, Progress& progress,
                 ImportResult& result, std::string& error) {
    return Importer(doc, rules, result, error).Run(table, progress);
}

}  // namespace quillary
