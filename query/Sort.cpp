#include "query/Sort.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <functional>
#include <future>
#include <limits>
#include <numeric>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "db/FieldValue.h"
#include "query/KeyedRows.h"

namespace quillary {

namespace {

// The place of each byte in the order of the page's UTF-16 units.
using Ranks = std::array<std::uint8_t, 256>;

// Gives a stored text as it is displayed: every line end as CR LF, a lone CR as it is.
class DisplayedBytes {
  public:
    DisplayedBytes(std::string_view text, std::size_t at, const Ranks& ranks)
        : m_text(text), m_at(at), m_ranks(ranks) {}

    // The rank of the next byte, below all ranks at the end.
    int Next() {
        if (m_at == m_text.size()) return -1;
        const char byte = m_text[m_at];
        const bool isLone = byte == '\n' && !m_hasReturn && (m_at == 0 || m_text[m_at - 1] != '\r');
        m_hasReturn = isLone;
        if (isLone) return m_ranks['\r'];
        ++m_at;
        return m_ranks[static_cast<unsigned char>(byte)];
    }

  private:
    std::string_view m_text;
    std::size_t m_at;
    const Ranks& m_ranks;
    bool m_hasReturn = false;  // the one that a lone line feed is shown with has been given
};

int CompareDisplayed(std::string_view a, std::string_view b, const Ranks& ranks) {
    // What they begin with alike is shown alike, and may be long: all that can be passed in large steps.
    constexpr std::size_t kStep = 16;
    const std::size_t common = std::min(a.size(), b.size());
    std::size_t at = 0;
    while (at + kStep <= common && std::memcmp(a.data() + at, b.data() + at, kStep) == 0) at += kStep;
    DisplayedBytes restOfA(a, at, ranks);
    DisplayedBytes restOfB(b, at, ranks);
    for (;;) {
        const int ofA = restOfA.Next();
        const int ofB = restOfB.Next();
        if (ofA != ofB) return ofA < ofB ? -1 : 1;
        if (ofA < 0) return 0;
    }
}

// One key's values, found once for each record.
struct KeyColumn {
    bool descending = false;
    bool isText = false;
    std::vector<double> numbers;
    // Each record's place in the order; for a text by what it begins with, so that equal places decide nothing yet.
    std::vector<std::uint64_t> places;
    // The stored texts, where they stand: copies could take more memory than the file.
    std::vector<std::string_view> texts;
    const AnsiText* page = nullptr;
    const Ranks* ranks = nullptr;  // of a single-byte page

    void AddPlace() {
        const std::uint64_t place = isText ? Beginning(texts.back()) : KeyOf(numbers.back());
        places.push_back(descending ? ~place : place);
    }
    // Whether its place may say less than the record's whole text.
    [[nodiscard]] bool IsCut(std::uint32_t record) const {
        const std::string_view text = texts[record];
        // A line feed may be shown as two.
        return !ranks || text.size() >= kBeginning || text.find('\n') != text.npos;
    }

    [[nodiscard]] std::u16string DisplayedUnits(std::string_view text) const {
        std::string display;
        AppendUniformLines(text, display);
        return page->ToWide(display);
    }

    [[nodiscard]] int Compare(std::uint32_t a, std::uint32_t b) const {
        if (descending) std::swap(a, b);
        if (!isText) return numbers[a] < numbers[b] ? -1 : numbers[a] > numbers[b];
        if (ranks) return CompareDisplayed(texts[a], texts[b], *ranks);
        if (texts[a] == texts[b]) return 0;
        const int difference = DisplayedUnits(texts[a]).compare(DisplayedUnits(texts[b]));
        return difference < 0 ? -1 : difference > 0;
    }

  private:
    static constexpr std::size_t kBeginning = sizeof(std::uint64_t);  // bytes, as they are shown
    static constexpr std::size_t kBeginningUnits = kBeginning / sizeof(char16_t);

    // Shorter texts are filled up with zeros, which stand for no character.
    [[nodiscard]] std::uint64_t Beginning(std::string_view text) const {
        std::uint64_t beginning = 0;
        if (!ranks) {
            const std::u16string units = DisplayedUnits(text);
            for (std::size_t i = 0; i < kBeginningUnits; ++i)
                beginning = beginning << 16 | (i < units.size() ? units[i] : 0);
            return beginning;
        }
        if (text.substr(0, kBeginning).find('\n') == std::string_view::npos) {
            for (std::size_t i = 0; i < kBeginning; ++i) {
                beginning = beginning << 8 | (i < text.size() ? (*ranks)[static_cast<unsigned char>(text[i])] : 0);
            }
            return beginning;
        }
        DisplayedBytes shown(text, 0, *ranks);
        for (std::size_t i = 0; i < kBeginning; ++i) {
            beginning = beginning << 8 | static_cast<std::uint64_t>(std::max(shown.Next(), 0));
        }
        return beginning;
    }
};

// Bytes without a character share one place.
Ranks RankTable(const AnsiText& page) {
    std::vector<char16_t> units(page.Units().begin(), page.Units().end());
    std::sort(units.begin(), units.end());
    units.erase(std::unique(units.begin(), units.end()), units.end());
    Ranks ranks{};
    for (std::size_t b = 0; b < ranks.size(); ++b) {
        const auto place = std::lower_bound(units.begin(), units.end(), page.Units()[b]);
        ranks[b] = static_cast<std::uint8_t>(place - units.begin());
    }
    return ranks;
}

double NumberOf(FieldType type, std::optional<std::string_view> entry) {
    const std::string_view stored = entry.value_or(std::string_view{});
    switch (type) {
        // As the texts "", "false" and "true" of a missing, an unchecked and a checked one.
        case FieldType::Checkbox:
            return !entry ? -1 : IsChecked(stored) ? 1 : 0;
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

bool SortsAsText(FieldType type) { return type == FieldType::Text || type == FieldType::List; }

bool HasNoOrder(FieldType type) {
    return type == FieldType::Phone || type == FieldType::EMail || type == FieldType::WebUrl;
}

KeyColumn ExtractKeys(const CQuillaryDoc& doc, std::span<const RecordRef> records, std::size_t field, bool descending,
                      const Ranks& ranks, const RowsDone& done) {
    const FieldType type = doc.TypeOf(field);
    KeyColumn column;
    column.descending = descending;
    column.isText = SortsAsText(type);
    column.page = &doc.Page();
    column.ranks = doc.Page().IsSingleByte() ? &ranks : nullptr;
    column.texts.reserve(column.isText ? records.size() : 0);
    column.numbers.reserve(column.isText ? 0 : records.size());
    column.places.reserve(records.size());
    for (const RecordRef& record : records) {
        const auto stored = FindEntry(record.Entries(), static_cast<std::uint8_t>(field));
        if (column.isText) {
            column.texts.push_back(stored.value_or(std::string_view{}));
        } else {
            column.numbers.push_back(NumberOf(type, stored));
        }
        column.AddPlace();
        if (done && column.places.size() % kRowsATurn == 0) done(column.places.size());
    }
    return column;
}

// What some records have under the keys of their database; rows count among these records.
class Comparison {
  public:
    Comparison(const CQuillaryDoc& doc, std::span<const RecordRef> records, const RowsDone& done = {})
        : m_ranks(RankTable(doc.Page())) {
        std::vector<std::size_t> fields;
        // The columns of many records at once, each on a thread.
        const auto launch =
            records.size() > kFewRecords ? std::launch::async | std::launch::deferred : std::launch::deferred;
        std::vector<std::future<KeyColumn>> columns;
        for (const SortKey& key : doc.Sort()) {
            const auto field = doc.FieldByName(key.field);
            // A second key on a field would only be asked about equal values.
            const bool isNew = field && std::find(fields.begin(), fields.end(), *field) == fields.end();
            if (!isNew || HasNoOrder(doc.TypeOf(*field))) continue;
            fields.push_back(*field);
            columns.push_back(std::async(launch, ExtractKeys, std::cref(doc), records, *field, key.descending,
                                         std::cref(m_ranks), columns.empty() ? done : RowsDone()));
        }
        for (auto& column : columns) m_columns.push_back(column.get());
    }
    Comparison(const Comparison&) = delete;
    Comparison& operator=(const Comparison&) = delete;

    // From the last key to the first; each leaves the order of those behind it among equals.
    void Sort(std::vector<std::uint32_t>& order) const {
        std::vector<KeyedRow> rows(order.size());
        std::vector<KeyedRow> spare;
        for (auto column = m_columns.rbegin(); column != m_columns.rend(); ++column) {
            for (std::size_t i = 0; i < order.size(); ++i) rows[i] = {column->places[order[i]], order[i]};
            SortByKey(rows, spare);
            for (std::size_t i = 0; i < order.size(); ++i) order[i] = rows[i].row;
            if (column->isText) SortLongTexts(*column, rows, order);
        }
    }
    [[nodiscard]] int Compare(std::uint32_t a, std::uint32_t b) const {
        for (const KeyColumn& column : m_columns) {
            if (const int difference = column.Compare(a, b)) return difference;
        }
        return 0;
    }

  private:
    static constexpr std::size_t kFewRecords = 2000;
    static constexpr std::size_t kMostDecoded = std::size_t{8} << 20;  // bytes of stored texts that begin alike

    // Those that begin alike. Most of them are the same altogether, as in a list.
    static void SortLongTexts(const KeyColumn& column, const std::vector<KeyedRow>& rows,
                              std::vector<std::uint32_t>& order) {
        for (std::size_t begin = 0, end = 0; begin < rows.size(); begin = end) {
            bool isCut = false;
            bool isOneText = true;
            std::size_t bytes = 0;
            for (; end < rows.size() && rows[end].key == rows[begin].key; ++end) {
                isCut = isCut || column.IsCut(rows[end].row);
                bytes += column.texts[rows[end].row].size();
                isOneText = isOneText && column.texts[rows[end].row] == column.texts[rows[begin].row];
            }
            if (!isCut || isOneText) continue;
            const std::span<std::uint32_t> alike(order.data() + begin, end - begin);
            if (!column.ranks && bytes <= kMostDecoded) {
                SortDecoded(column, alike);
                continue;
            }
            std::stable_sort(alike.begin(), alike.end(),
                             [&column](std::uint32_t a, std::uint32_t b) { return column.Compare(a, b) < 0; });
        }
    }
    // Each text is decoded once and not at every comparison.
    static void SortDecoded(const KeyColumn& column, std::span<std::uint32_t> records) {
        std::vector<std::pair<std::u16string, std::uint32_t>> decoded;
        decoded.reserve(records.size());
        for (const std::uint32_t record : records) {
            decoded.emplace_back(column.DisplayedUnits(column.texts[record]), record);
        }
        std::stable_sort(decoded.begin(), decoded.end(), [&column](const auto& a, const auto& b) {
            return column.descending ? b.first < a.first : a.first < b.first;
        });
        for (std::size_t i = 0; i < records.size(); ++i) records[i] = decoded[i].second;
    }

    const Ranks m_ranks;
    std::vector<KeyColumn> m_columns;
};

}  // namespace

SortSettings KeysInUse(const CQuillaryDoc& doc) {
    SortSettings keys = doc.Sort();
    std::erase_if(keys, [&doc](const SortKey& key) { return !doc.FieldByName(key.field); });
    return keys;
}

int CompareRecords(const CQuillaryDoc& doc, std::size_t a, std::size_t b) {
    const RecordRef records[] = {doc.Shown()[a], doc.Shown()[b]};
    return Comparison(doc, records).Compare(0, 1);
}

std::vector<std::uint32_t> SortedOrder(const CQuillaryDoc& doc, const RowsDone& done) {
    std::vector<std::uint32_t> order(doc.Shown().size());
    std::iota(order.begin(), order.end(), 0u);
    Comparison(doc, doc.Shown(), done).Sort(order);
    return order;
}

void SortRecords(CQuillaryDoc& doc, const RowsDone& done) {
    if (!doc.Sort().empty()) doc.ReorderRecords(SortedOrder(doc, done));
}

}  // namespace quillary
