#include "query/Filter.h"

#include <algorithm>
#include <utility>

#include "db/FieldValue.h"
#include "db/Layout.h"
#include "db/Utf.h"

namespace quillary {

namespace {

// The codes of the operators, in the order of every type's list; "contains" stands in the place of "is not".
enum Operation : std::uint8_t { kIs, kIsNotOrContains, kLessOrBefore, kGreaterOrAfter };

constexpr std::size_t kLongestValue = kConditionTextSize - 1;  // the file ends it with a NUL

// A missing or unreadable date or time counts as 30 December 1899, day zero of the scale that dates are compared on:
// for times, which are of one later day, that is before midnight.
constexpr double kNullDay = -1462;
constexpr double kNullMinute = -1;

bool IsComparedAsText(FieldType type) {
    switch (type) {
        case FieldType::Text:
        case FieldType::List:
        case FieldType::Phone:
        case FieldType::EMail:
        case FieldType::WebUrl:
            return true;
        default:
            return false;
    }
}

std::string Folded(std::string_view bytes, const AnsiText& page) {
    std::string folded(bytes);
    std::transform(folded.begin(), folded.end(), folded.begin(),
                   [&page](unsigned char b) { return static_cast<char>(page.Fold()[b]); });
    return folded;
}

bool IsSameFolded(std::string_view bytes, std::string_view folded, const AnsiText& page) {
    return bytes.size() == folded.size() &&
           std::equal(bytes.begin(), bytes.end(), folded.begin(),
                      [&page](unsigned char b, unsigned char upper) { return page.Fold()[b] == upper; });
}

// Every condition with the field that it is about, but those that name none.
template <typename Use>
void ForEachEffective(const CQuillaryDoc& doc, Use use) {
    for (const FilterCondition& condition : doc.Filter().conditions) {
        const auto field = condition.allFields ? std::nullopt : doc.FieldByName(condition.field);
        if (condition.allFields || field) use(condition, field);
    }
}

}  // namespace

std::span<const std::string_view> FilterOperators(const CQuillaryDoc& doc, std::optional<std::size_t> field) {
    return field ? InfoOf(doc.TypeOf(*field)).operators : AllFieldsOperators();
}

FilterSettings EffectiveFilter(const CQuillaryDoc& doc) {
    FilterSettings effective{{}, doc.Filter().matchAny, doc.Filter().onlyShown};
    ForEachEffective(doc, [&](const FilterCondition& condition, std::optional<std::size_t>) {
        effective.conditions.push_back(condition);
    });
    return effective;
}

bool IsFilteredBy(const CQuillaryDoc& doc, std::size_t field) {
    const auto& conditions = doc.Filter().conditions;
    return std::any_of(conditions.begin(), conditions.end(), [&](const FilterCondition& condition) {
        return condition.allFields || condition.field == doc.Fields()[field].name;
    });
}

// ---- The test of one record

RecordFilter::RecordFilter(const CQuillaryDoc& doc) : m_doc(doc), m_matchAny(doc.Filter().matchAny) {
    ForEachEffective(doc, [this](const FilterCondition& condition, std::optional<std::size_t> field) {
        m_conditions.push_back(Prepared(condition, field));
    });
}

RecordFilter::Condition RecordFilter::Prepared(const FilterCondition& stored, std::optional<std::size_t> field) const {
    const AnsiText& page = m_doc.Page();
    Condition condition;
    condition.field = field;
    condition.operation = stored.operation;
    condition.isKnown = stored.operation < FilterOperators(m_doc, field).size();
    if (!field || IsComparedAsText(m_doc.TypeOf(*field))) {
        const bool isList = field && m_doc.TypeOf(*field) == FieldType::List;
        condition.isContained = !isList && stored.operation == kIsNotOrContains;
        if (!page.IsSingleByte()) {
            condition.upper = AnsiText::Upper(page.ToWide(stored.value));
        } else {
            condition.folded = Folded(stored.value, page);
            if (!condition.folded.empty()) condition.search.emplace(condition.folded, page);
        }
        return condition;
    }
    switch (m_doc.TypeOf(*field)) {
        case FieldType::Checkbox:
            condition.value.number = IsConditionChecked(stored.value) ? 1 : 0;
            break;
        case FieldType::Date: {
            const auto day = ReadDay(stored.value);
            condition.value = {day ? *day : kNullDay, !day};
            break;
        }
        case FieldType::Time: {
            const auto minute = ConditionMinute(stored.value);
            condition.value = {minute ? *minute : kNullMinute, !minute};
            break;
        }
        default:
            condition.value.number = ReadNumber(stored.value);
    }
    return condition;
}

bool RecordFilter::MatchCondition(std::string_view entries, std::size_t k) {
    const Condition& condition = m_conditions[k];
    if (!condition.isKnown) return false;
    if (!condition.field) return AnyFieldMatches(entries, condition);
    const FieldType type = m_doc.TypeOf(*condition.field);
    const auto entry = FindEntry(entries, static_cast<std::uint8_t>(*condition.field));
    const std::string_view stored = entry.value_or(std::string_view{});
    Value value;
    switch (type) {
        case FieldType::List: {
            const bool isSame = TextMatches(Displayed(*condition.field, entry), condition);
            return isSame == (condition.operation == kIs);
        }
        case FieldType::Checkbox:
            // Only the text "false" is unchecked; a missing entry shows as an empty one.
            value.number = !entry || IsChecked(stored) ? 1 : 0;
            break;
        case FieldType::Date: {
            const auto day = ReadDay(stored);
            value = {day ? *day : kNullDay, !day};
            break;
        }
        case FieldType::Time: {
            const auto minute = ReadMinute(stored);
            value = {minute ? *minute : kNullMinute, !minute};
            break;
        }
        case FieldType::Number:
        case FieldType::Sequence:
            value.number = ReadNumber(stored);
            break;
        default:
            return TextMatches(Displayed(*condition.field, entry), condition);
    }
    const bool isSame = value.isNull == condition.value.isNull && value.number == condition.value.number;
    switch (condition.operation) {
        case kIs:
            return isSame;
        case kIsNotOrContains:
            return !isSame;
        case kLessOrBefore:
            return value.number < condition.value.number;
        default:
            return value.number > condition.value.number;
    }
}

bool RecordFilter::AnyFieldMatches(std::string_view entries, const Condition& condition) {
    m_entries.Fill(entries, m_doc.FieldCount());
    for (std::size_t field = 0; field < m_doc.FieldCount(); ++field) {
        const auto stored = m_entries.Has(field) ? std::optional(m_entries.Text(field)) : std::nullopt;
        if (TextMatches(Displayed(field, stored), condition)) return true;
    }
    return false;
}

std::string_view RecordFilter::Displayed(std::size_t field, std::optional<std::string_view> stored) {
    if (!stored) return {};
    switch (m_doc.TypeOf(field)) {
        case FieldType::Text:
        case FieldType::List:
            if (stored->find('\n') == stored->npos) return *stored;
            break;
        case FieldType::Number:
        case FieldType::Sequence:
        case FieldType::EMail:
        case FieldType::WebUrl:
            return *stored;
        default:
            break;
    }
    m_display.clear();
    m_doc.AppendDisplay(*stored, field, m_display);
    return m_display;
}

bool RecordFilter::TextMatches(std::string_view display, const Condition& condition) const {
    const AnsiText& page = m_doc.Page();
    if (page.IsSingleByte()) {
        if (!condition.isContained) return IsSameFolded(display, condition.folded, page);
        return !condition.search || condition.search->IsIn(display);
    }
    const std::u16string upper = AnsiText::Upper(page.ToWide(display));
    return condition.isContained ? upper.find(condition.upper) != upper.npos : upper == condition.upper;
}

bool RecordFilter::Passes(std::string_view entries) {
    bool result = MatchCondition(entries, 0);
    for (std::size_t k = 1; k < m_conditions.size(); ++k) {
        if (result == m_matchAny) return result;
        result = MatchCondition(entries, k);
    }
    return result;
}

// ---- Condition values

bool CheckConditionLength(std::string_view value, const AnsiText& page, Failure& failure) {
    if (value.size() <= kLongestValue) return true;
    failure.Set(Message::ConditionTooLong, {page.ToUtf8(value), std::to_string(value.size())});
    return false;
}

std::optional<std::string> ConditionText(std::u16string_view typed, const AnsiText& page, Failure& failure) {
    std::u16string unstorable;
    auto stored = page.FromWide(typed, &unstorable);
    if (!stored) {
        failure.Set(Message::UnstorableCharacters, {"a filter condition", WideToUtf8(unstorable)});
        return std::nullopt;
    }
    if (!CheckConditionLength(*stored, page, failure)) return std::nullopt;
    return stored;
}

std::string ConditionCount(std::optional<std::int32_t> count) { return count ? std::to_string(*count) : std::string(); }

std::string ConditionCheck(bool checked) { return checked ? "T" : "F"; }

bool IsConditionChecked(std::string_view value) { return !value.starts_with('F'); }

// Unlike a record's time, every text but an empty one is a count here: that of an unreadable one is 0, midnight.
std::optional<std::int32_t> ConditionMinute(std::string_view value) {
    constexpr std::int32_t kMinutesADay = 24 * 60;
    const std::int32_t seconds = ReadDecimal(value);
    if (value.empty() || seconds < 0) return std::nullopt;
    return seconds / 60 % kMinutesADay;
}

// ---- What the commands do

void ApplyFilter(CQuillaryDoc& doc, const RowsDone& done) {
    constexpr std::size_t kAhead = 8;
    RecordFilter filter(doc);
    if (filter.IsEmpty()) return;
    std::vector<RecordRef> tested = doc.Shown();
    std::vector<RecordRef> hidden = doc.Hidden();
    if (!doc.Filter().onlyShown) {
        tested.insert(tested.end(), hidden.begin(), hidden.end());
        hidden.clear();
    }
    std::vector<RecordRef> shown;
    std::vector<RecordRef> rejected;
    shown.reserve(tested.size());
    for (std::size_t i = 0; i < tested.size(); ++i) {
        // Sorted records lie all over the image: the next ones are on their way while this one is tested.
        if (i + kAhead < tested.size()) __builtin_prefetch(tested[i + kAhead].data);
        (filter.Passes(tested[i].Entries()) ? shown : rejected).push_back(tested[i]);
        if (done && i % kRowsATurn == 0) done(i);
    }
    // The last one is hidden first.
    hidden.insert(hidden.end(), rejected.rbegin(), rejected.rend());
    doc.DivideRecords(std::move(shown), std::move(hidden));
}

void SetAndApplyFilter(CQuillaryDoc& doc, FilterSettings settings, const RowsDone& done) {
    doc.SetFilter(std::move(settings));
    ApplyFilter(doc, done);
}

void RemoveFilter(CQuillaryDoc& doc) {
    FilterSettings settings = doc.Filter();
    settings.conditions.clear();
    doc.SetFilter(std::move(settings));
    doc.ShowAllRecords();
}

}  // namespace quillary
