#include "query/Sort.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>
#include <string>
#include <string_view>

#include "db/FieldValue.h"

namespace quillary {

namespace {

// One key's values, computed once for each record so that comparing costs no formatting.
struct KeyColumn {
    bool descending = false;
    bool isText = false;
    std::vector<double> numbers;
    // Texts as bytes (or UTF-16 units, high byte first) whose order as unsigned numbers is the ordinal order of the
    // texts.
    std::string texts;
    std::vector<std::size_t> ends;  // of each record's text in `texts`

    [[nodiscard]] std::string_view TextOf(std::uint32_t row) const {
        const std::size_t begin = row == 0 ? 0 : ends[row - 1];
        return std::string_view(texts).substr(begin, ends[row] - begin);
    }
    [[nodiscard]] int Compare(std::uint32_t a, std::uint32_t b) const {
        if (descending) std::swap(a, b);
        if (isText) return TextOf(a).compare(TextOf(b));
        return numbers[a] < numbers[b] ? -1 : numbers[a] > numbers[b];
    }
};

// The place of each byte in the order of the page's UTF-16 units; bytes without a character share one.
std::array<char, 256> RankTable(const AnsiText& page) {
    std::vector<char16_t> units(page.Units().begin(), page.Units().end());
    std::sort(units.begin(), units.end());
    units.erase(std::unique(units.begin(), units.end()), units.end());
    std::array<char, 256> ranks{};
    for (std::size_t b = 0; b < ranks.size(); ++b) {
        const auto place = std::lower_bound(units.begin(), units.end(), page.Units()[b]);
        ranks[b] = static_cast<char>(place - units.begin());
    }
    return ranks;
}

void AppendOrdinal(std::string_view text, const AnsiText& page, const std::array<char, 256>& ranks, std::string& out) {
    if (page.IsSingleByte()) {
        for (const unsigned char byte : text) out.push_back(ranks[byte]);
        return;
    }
    for (const char16_t unit : page.ToWide(text)) {
        out.push_back(static_cast<char>(unit >> 8));
        out.push_back(static_cast<char>(unit));
    }
}

double NumberOf(FieldType type, std::string_view stored) {
    switch (type) {
        // An empty or unreadable date comes before every other, an unreadable time counts as midnight.
        case FieldType::Date: {
            const auto day = ReadDay(stored);
            return day ? *day : -std::numeric_limits<double>::infinity();
        }
        case FieldType::Time:
            return ReadMinute(stored).value_or(0);
        default:
            return ReadNumber(stored);
    }
}

bool SortsAsText(FieldType type) {
    return type == FieldType::Text || type == FieldType::Checkbox || type == FieldType::List;
}

bool HasNoOrder(FieldType type) {
    return type == FieldType::Phone || type == FieldType::EMail || type == FieldType::WebUrl;
}

KeyColumn ExtractKeys(const CQuillaryDoc& doc, std::size_t field, bool descending) {
    const FieldType type = doc.TypeOf(field);
    const auto& records = doc.Shown();
    KeyColumn column;
    column.descending = descending;
    column.isText = SortsAsText(type);
    if (column.isText) {
        column.ends.reserve(records.size());
    } else {
        column.numbers.reserve(records.size());
    }
    const auto ranks = RankTable(doc.Page());
    std::string display;
    for (const RecordRef& record : records) {
        const auto stored = FindEntry(record.Entries(), static_cast<std::uint8_t>(field));
        if (!column.isText) {
            column.numbers.push_back(NumberOf(type, stored.value_or(std::string_view{})));
            continue;
        }
        display.clear();
        if (stored) doc.AppendDisplay(*stored, field, display);
        AppendOrdinal(display, doc.Page(), ranks, column.texts);
        column.ends.push_back(column.texts.size());
    }
    return column;
}

}  // namespace

std::vector<std::uint32_t> SortedOrder(const CQuillaryDoc& doc) {
    std::vector<KeyColumn> columns;
    for (const SortKey& key : doc.Sort()) {
        const auto field = doc.FieldByName(key.field);
        if (field && !HasNoOrder(doc.TypeOf(*field))) columns.push_back(ExtractKeys(doc, *field, key.descending));
    }
    std::vector<std::uint32_t> order(doc.Shown().size());
    std::iota(order.begin(), order.end(), 0u);
    if (columns.empty()) return order;
    std::stable_sort(order.begin(), order.end(), [&columns](std::uint32_t a, std::uint32_t b) {
        for (const KeyColumn& column : columns) {
            if (const int difference = column.Compare(a, b)) return difference < 0;
        }
        return false;
    });
    return order;
}

void SortRecords(CQuillaryDoc& doc) {
    if (!doc.Sort().empty()) doc.ReorderRecords(SortedOrder(doc));
}

}  // namespace quillary
