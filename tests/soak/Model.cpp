#include "tests/soak/Model.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "admin/ConvertValue.h"
#include "cli/Check.h"
#include "db/CellText.h"
#include "db/FieldValue.h"
#include "db/RecordCommit.h"
#include "query/Filter.h"
#include "query/Sort.h"
#include "tests/fakes/TestDatabase.h"
#include "tests/posix/TestFolder.h"

namespace quillary::soak {

namespace {

const AnsiText& Page() { return AnsiText::Windows1252(); }

DateStyle StyleOf(const Database& database) { return database.longDates ? DateStyle::Long : DateStyle::Numeric; }

class AnyPassword : public Questions {
  public:
    void Tell(const Failure&) override {}
    bool AskDatabasePassword(const CQuillaryDoc&) override { return true; }
};

/// To ask it the rules for single records.
std::unique_ptr<CQuillaryDoc> DocumentOf(const Database& database) {
    static MemoryFiles noFiles;
    auto doc = std::make_unique<CQuillaryDoc>(noFiles);
    doc->NewDatabase(database.name, database.fields);
    doc->SetStyle(StyleOf(database));
    doc->SetSort(database.sort);
    doc->SetFilter(database.filter);
    Failure failure;
    for (const Row& row : database.shown) (void)doc->AppendRecord(Entries(row), failure);
    return doc;
}

std::vector<Row> RowsOf(const std::vector<RecordRef>& records, std::size_t fields) {
    std::vector<Row> rows;
    for (const RecordRef& record : records) {
        Row& row = rows.emplace_back();
        for (std::uint8_t k = 0; k < fields; ++k) row.emplace_back(FindEntry(record.Entries(), k).value_or("(none)"));
    }
    return rows;
}

/// All of it, for comparison.
std::vector<std::string> LinesOf(const Database& database) {
    const FilterSettings& filter = database.filter;
    std::vector<std::string> lines = {"name " + database.name, "info " + database.info};
    for (const Field& f : database.fields)
        lines.push_back("field " + f.name + ' ' + EncodeFieldType(f.type, f.options) + ' ' + std::to_string(f.width));
    for (const auto* rows : {&database.shown, &database.hidden}) {
        for (const Row& row : *rows) {
            lines.emplace_back(rows == &database.shown ? "shown" : "hidden");
            for (const std::string& value : row) lines.back() += " [" + value + ']';
        }
    }
    for (const SortKey& key : database.sort) lines.push_back("key " + key.field + (key.descending ? " down" : " up"));
    for (const FilterCondition& c : filter.conditions) {
        lines.push_back("condition " + (c.allFields ? "*" : c.field) + ' ' + std::to_string(c.operation) + c.value);
    }
    const bool isAny = filter.matchAny && !filter.conditions.empty();
    lines.push_back("any, long dates, edits: " + std::to_string(isAny) + std::to_string(database.longDates) +
                    std::to_string(database.editOnSelect));
    lines.push_back("locks " + std::to_string(database.infoLock) + ' ' + std::to_string(database.password));
    return lines;
}

}  // namespace

const Field* Database::FieldNamed(std::string_view wanted) const {
    const auto found = std::ranges::find(fields, wanted, &Field::name);
    return found == fields.end() ? nullptr : &*found;
}

std::string Database::Display(const std::string& stored, int field) const {
    return DisplayText(fields[At(field)].type, stored, StyleOf(*this), Page());
}

std::string Database::Cell(int row, int field) const {
    std::string cell;
    const auto at = At(row);
    AppendCellText(Display(shown[at][At(field)], field), at, cell);
    return cell;
}

Row Database::NewRecord() const {
    Row row;
    for (const Field& field : fields) {
        const auto& [type, options] = std::tie(field.type, field.options);
        row.push_back(type == FieldType::Sequence                ? std::to_string(options.first)
                      : type == FieldType::Checkbox              ? options.checked ? "true" : "false"
                      : type == FieldType::Date && options.today ? "36591"
                      : type == FieldType::Time && options.now   ? "52200"
                                                                 : "");
    }
    return row;
}

void Database::Append(Row row) {
    shown.push_back(std::move(row));
    for (Field& field : fields) {
        if (field.type != FieldType::Sequence) continue;
        const long long next = static_cast<long long>(field.options.first) + field.options.increment;
        field.options.first = static_cast<std::int32_t>(std::clamp<long long>(next, INT32_MIN, INT32_MAX));
    }
}

void Database::Sort() {
    const auto doc = DocumentOf(*this);
    std::vector<std::size_t> order(shown.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::stable_sort(order, [&](auto a, auto b) { return CompareRecords(*doc, a, b) < 0; });
    const std::vector<Row> unsorted = std::exchange(shown, {});
    for (const std::size_t row : order) shown.push_back(unsorted[row]);
}

void Database::ShowAll() {
    shown.insert(shown.end(), hidden.begin(), hidden.end());
    hidden.clear();
}

void Database::ApplyFilter() {
    const auto doc = DocumentOf(*this);
    RecordFilter test(*doc);
    if (test.IsEmpty()) return;
    if (!filter.onlyShown) ShowAll();
    for (std::size_t i = shown.size(); i-- > 0;) {
        if (test.Passes(Entries(shown[i]))) continue;
        hidden.push_back(shown[i]);
        shown.erase(shown.begin() + static_cast<std::ptrdiff_t>(i));
    }
}

void Database::ChangeFields(const std::vector<Definition>& definitions) {
    bool isSameLayout = definitions.size() == fields.size();
    for (int k = 0; isSameLayout && At(k) < fields.size(); ++k) {
        isSameLayout = definitions[At(k)].from == k && definitions[At(k)].field.type == fields[At(k)].type;
    }
    for (auto* rows : {&shown, &hidden}) {
        for (Row& row : *rows) {
            if (isSameLayout) break;
            const Row old = std::exchange(row, {});
            for (const auto& [field, from, order] : definitions) {
                std::string& value = row.emplace_back(from < 0 && field.type == FieldType::Checkbox ? "false" : "");
                if (from < 0) continue;
                const auto at = At(from);
                const Conversion conversion{field.type, fields[at].type, order, 2000, StyleOf(*this)};
                (void)AppendConverted(conversion, old[at], Page(), value);
            }
        }
    }
    fields.clear();
    for (const Definition& definition : definitions) fields.push_back(definition.field);
    std::erase_if(sort, [this](const SortKey& key) { return !FieldNamed(key.field); });
    std::erase_if(filter.conditions, [this](const auto& c) { return !c.allFields && !FieldNamed(c.field); });
}

// ---- Files

Database Database::InFile() const {
    Database stored = *this;
    stored.filter.onlyShown = false;
    stored.filter.matchAny = filter.matchAny && !filter.conditions.empty();
    return stored;
}

std::string Database::Difference(const Database& found) const {
    auto expected = LinesOf(*this);
    auto other = LinesOf(found);
    expected.resize(std::max(expected.size(), other.size()), "nothing");
    other.resize(expected.size(), "nothing");
    const auto [a, b] = std::ranges::mismatch(expected, other);
    return a == expected.end() ? std::string() : "holds\n  " + *b + "\ninstead of\n  " + *a;
}

Database ContentOf(const CQuillaryDoc& doc) {
    return {Page().FromWide(doc.Name()).value_or("?"),
            doc.Fields(),
            RowsOf(doc.Shown(), doc.FieldCount()),
            RowsOf(doc.Hidden(), doc.FieldCount()),
            doc.Sort(),
            doc.Filter(),
            doc.Style() == DateStyle::Long,
            doc.EditOnSelect(),
            doc.InfoTextBytes(),
            doc.InfoLockHash(),
            doc.DatabasePasswordHash()};
}

std::optional<Database> ReadFile(FileAccess& files, const Path& path) {
    CQuillaryDoc doc(files);
    AnyPassword questions;
    return doc.OpenDatabase(path, OpenMode::Read, questions) ? std::optional(ContentOf(doc)) : std::nullopt;
}

bool AppendByAnother(FileAccess& files, const Path& path, const Row& row) {
    CQuillaryDoc doc(files);
    AnyPassword questions;
    Failure failure;
    return doc.OpenDatabase(path, OpenMode::EditExclusive, questions) && CommitNewRecord(doc, row, failure) &&
           doc.SaveDatabase(failure);
}

std::string CheckFile(const Path& path) {
    std::string first;
    Progress progress("", 0, false);
    CheckImage(FileBytes(path), Page(), progress, [&first](const Departure& departure) {
        first = std::to_string(departure.offset) + ": " + departure.problem;
        return false;
    });
    return first;
}

}  // namespace quillary::soak
