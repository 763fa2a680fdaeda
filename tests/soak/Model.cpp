#include "tests/soak/Model.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <limits>

#include "admin/ConvertValue.h"
#include "cli/Check.h"
#include "db/CellText.h"
#include "db/FieldValue.h"
#include "db/QuillaryDoc.h"
#include "db/RecordCommit.h"
#include "query/Filter.h"

namespace quillary::soak {

namespace {

const AnsiText& Page() { return AnsiText::Windows1252(); }

std::u16string Upper(const std::string& text) { return AnsiText::Upper(Page().ToWide(text)); }

class AnyPassword : public Questions {
  public:
    void Tell(const Failure& failure) override { told = failure.text; }
    bool AskDatabasePassword(const CQuillaryDoc&) override { return true; }
    std::string told;
};

std::vector<Row> RowsOf(const std::vector<RecordRef>& records, std::size_t fields) {
    std::vector<Row> rows;
    for (const RecordRef& record : records) {
        Row& row = rows.emplace_back();
        for (std::uint8_t k = 0; k < fields; ++k) row.emplace_back(FindEntry(record.Entries(), k).value_or("(none)"));
    }
    return rows;
}

/// As a number, for the types that are compared as numbers; what cannot be read is null.
std::optional<double> Value(FieldType type, const std::string& stored) {
    switch (type) {
        case FieldType::Checkbox:
            return IsChecked(stored);
        case FieldType::Date:
            return ReadDay(stored);
        case FieldType::Time:
            return ReadMinute(stored);
        default:
            return ReadNumber(stored);
    }
}

std::optional<double> Wanted(FieldType type, const std::string& condition) {
    if (type == FieldType::Checkbox) return IsConditionChecked(condition);
    return type == FieldType::Time ? std::optional<double>(ConditionMinute(condition)) : Value(type, condition);
}

bool IsText(FieldType type) { return type == FieldType::Text || type >= FieldType::List; }

}  // namespace

int Database::FieldNamed(std::string_view wanted) const {
    const auto found = std::find_if(fields.begin(), fields.end(), [&](const Field& f) { return f.name == wanted; });
    return found == fields.end() ? -1 : static_cast<int>(found - fields.begin());
}

std::string Database::Display(const std::string& stored, int field) const {
    return DisplayText(fields[At(field)].type, stored, longDates ? DateStyle::Long : DateStyle::Numeric, Page());
}

std::string Database::Cell(int row, int field) const {
    std::string cell;
    AppendCellText(Display(shown[At(row)][At(field)], field), At(row), cell);
    return cell;
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
    const auto isBefore = [this](const Row& a, const Row& b) {
        for (const SortKey& key : sort) {
            const int at = FieldNamed(key.field);
            if (at < 0 || fields[At(at)].type >= FieldType::Phone) continue;
            const FieldType type = fields[At(at)].type;
            const std::string& x = (key.descending ? b : a)[At(at)];
            const std::string& y = (key.descending ? a : b)[At(at)];
            if (IsText(type)) {
                if (Display(x, at) != Display(y, at)) return Display(x, at) < Display(y, at);
                continue;
            }
            // An unreadable date comes first, an unreadable time is midnight.
            const double unreadable = type == FieldType::Time ? 0 : -1e9;
            const double p = Value(type, x).value_or(unreadable);
            const double q = Value(type, y).value_or(unreadable);
            if (p != q) return p < q;
        }
        return false;
    };
    std::stable_sort(shown.begin(), shown.end(), isBefore);
}

void Database::ShowAll() {
    shown.insert(shown.end(), hidden.begin(), hidden.end());
    hidden.clear();
}

void Database::ApplyFilter() {
    const auto matchesText = [this](const Row& row, int field, const FilterCondition& c, bool isList) {
        const std::u16string text = Upper(Display(row[At(field)], field));
        if (c.operation > 1) return false;
        const bool isSame = text == Upper(c.value);
        if (isList) return isSame == (c.operation == 0);
        return c.operation == 0 ? isSame : text.find(Upper(c.value)) != text.npos;
    };
    const auto matches = [&](const Row& row, const FilterCondition& c) {
        const int field = FieldNamed(c.field);
        for (int k = 0; c.allFields && k < static_cast<int>(fields.size()); ++k) {
            if (matchesText(row, k, c, false)) return true;
        }
        if (c.allFields) return false;
        const FieldType type = fields[At(field)].type;
        if (IsText(type)) return matchesText(row, field, c, type == FieldType::List);
        const auto value = Value(type, row[At(field)]);
        const auto wanted = Wanted(type, c.value);
        if (c.operation < 2) return (value == wanted) == (c.operation == 0);
        const double null = type == FieldType::Date ? -1462 : -1;  // 30 December 1899
        const double a = value.value_or(null);
        const double b = wanted.value_or(null);
        return type != FieldType::Checkbox && (c.operation == 2 ? a < b : a > b);
    };
    std::vector<FilterCondition> used = filter.conditions;
    std::erase_if(used, [this](const FilterCondition& c) { return !c.allFields && FieldNamed(c.field) < 0; });
    if (used.empty()) return;
    if (!filter.onlyShown) ShowAll();
    for (std::size_t i = shown.size(); i-- > 0;) {
        const auto passes = [&](const FilterCondition& c) { return matches(shown[i], c); };
        if (filter.matchAny ? std::any_of(used.begin(), used.end(), passes)
                            : std::all_of(used.begin(), used.end(), passes)) {
            continue;
        }
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
                const DateStyle style = longDates ? DateStyle::Long : DateStyle::Numeric;
                (void)AppendConverted({field.type, fields[At(from)].type, order, 2000, style}, old[At(from)], Page(),
                                      value);
            }
        }
    }
    fields.clear();
    for (const Definition& definition : definitions) fields.push_back(definition.field);
    std::erase_if(sort, [this](const SortKey& key) { return FieldNamed(key.field) < 0; });
    std::erase_if(filter.conditions, [this](const auto& c) { return !c.allFields && FieldNamed(c.field) < 0; });
}

bool ShowsTheSame(FieldType type, const std::string& condition, const std::string& other) {
    const bool isPicked = type == FieldType::Date || type == FieldType::Time || type == FieldType::Checkbox;
    return isPicked && Wanted(type, condition) == Wanted(type, other);
}

// ---- Files

Database Database::InFile() const {
    Database stored = *this;
    stored.filter.onlyShown = false;
    stored.filter.matchAny = filter.matchAny && !filter.conditions.empty();
    return stored;
}

std::vector<std::string> Database::Lines() const {
    std::vector<std::string> lines = {"name " + name, "info " + info};
    const auto add = [&lines](const std::string& line) { lines.push_back(line); };
    for (const Field& f : fields)
        add("field " + f.name + ' ' + EncodeFieldType(f.type, f.options) + ' ' + std::to_string(f.width));
    for (const auto* rows : {&shown, &hidden}) {
        for (const Row& row : *rows) {
            add(rows == &shown ? "shown" : "hidden");
            for (const std::string& value : row) lines.back() += " [" + value + ']';
        }
    }
    for (const SortKey& key : sort) add("key " + key.field + (key.descending ? " down" : " up"));
    for (const FilterCondition& c : filter.conditions) {
        add("condition " + (c.allFields ? "*" : c.field) + ' ' + std::to_string(c.operation) + ' ' + c.value);
    }
    const bool isAny = filter.matchAny && !filter.conditions.empty();
    for (const std::int64_t one : {std::int64_t{isAny}, std::int64_t{longDates}, std::int64_t{editOnSelect},
                                   std::int64_t{infoLock}, std::int64_t{password}}) {
        add("setting " + std::to_string(one));
    }
    return lines;
}

std::string Database::Difference(const Database& found) const {
    const auto expected = Lines();
    const auto other = found.Lines();
    for (std::size_t k = 0; k < std::max(expected.size(), other.size()); ++k) {
        const std::string a = k < expected.size() ? expected[k] : "nothing";
        const std::string b = k < other.size() ? other[k] : "nothing";
        if (a != b) return "holds\n  " + b + "\ninstead of\n  " + a;
    }
    return {};
}

std::optional<Database> ReadFile(FileAccess& files, const Path& path) {
    CQuillaryDoc doc(files);
    AnyPassword questions;
    if (!doc.OpenDatabase(path, OpenMode::Read, questions)) return std::nullopt;
    return Database{Page().FromWide(doc.Name()).value_or("?"),
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

std::string AppendByAnother(FileAccess& files, const Path& path, const Row& row) {
    CQuillaryDoc doc(files);
    AnyPassword questions;
    Failure failure;
    if (!doc.OpenDatabase(path, OpenMode::EditExclusive, questions)) return "not opened: " + questions.told;
    return CommitNewRecord(doc, row, failure) && doc.SaveDatabase(failure) ? std::string() : failure.text;
}

std::string CheckFile(const Path& path) {
    std::ifstream file(path, std::ios::binary);
    const std::string image{std::istreambuf_iterator<char>(file), {}};
    std::string first;
    Progress progress("", 0, false);
    CheckImage(image, Page(), progress, [&first](const Departure& departure) {
        first = std::to_string(departure.offset) + ": " + departure.problem;
        return false;
    });
    return first;
}

}  // namespace quillary::soak
