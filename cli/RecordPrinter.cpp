#include "cli/RecordPrinter.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "cli/Text.h"
#include "db/CellText.h"
#include "db/FieldValue.h"

namespace quillary {

namespace {

constexpr std::uint64_t InEachByte(char c) { return 0x0101010101010101u * static_cast<unsigned char>(c); }

// Two bytes that a format gives a meaning, besides control characters.
struct MeaningfulBytes {
    std::uint64_t first;
    std::uint64_t second;
};
constexpr MeaningfulBytes kMeaningful[] = {{InEachByte(','), InEachByte('"')},
                                           {InEachByte('\\'), InEachByte('\\')},
                                           {InEachByte('"'), InEachByte('\\')},
                                           {InEachByte('"'), InEachByte('\\')}};

// Not 0 when one of the eight bytes is no printable ASCII, or meaningful.
std::uint64_t SpecialBytes(std::uint64_t bytes, const MeaningfulBytes& meaningful) {
    const auto belowIn = [](std::uint64_t value, std::uint64_t limits) { return (value - limits) & ~value; };
    return (bytes | belowIn(bytes, InEachByte(' ')) | belowIn(bytes ^ meaningful.first, InEachByte(1)) |
            belowIn(bytes ^ meaningful.second, InEachByte(1))) &
           InEachByte('\x80');
}

// Copies `text`, in words that overlap at its end; false when a byte of it is special. Most values are a few bytes
// long.
bool CopyPlain(std::string_view text, char* to, const MeaningfulBytes& meaningful) {
    const char* from = text.data();
    const std::size_t size = text.size();
    std::uint64_t special = 0;
    const auto copy = [&](auto word, std::size_t at) {
        std::memcpy(&word, from + at, sizeof word);
        std::memcpy(to + at, &word, sizeof word);
        constexpr std::uint64_t kFiller = sizeof word < 8 ? InEachByte('x') << (8 * (sizeof word % 8)) : 0;
        special |= SpecialBytes(kFiller | word, meaningful);
    };
    if (size >= 8) {
        for (std::size_t at = 0; at + 8 < size; at += 8) copy(std::uint64_t{}, at);
        copy(std::uint64_t{}, size - 8);
    } else if (size >= 4) {
        copy(std::uint32_t{}, 0);
        copy(std::uint32_t{}, size - 4);
    } else {
        for (std::size_t at = 0; at < size; ++at) copy(std::uint8_t{}, at);
    }
    return special == 0;
}

constexpr std::array<bool, 256> kNeedsQuotes = [] {
    std::array<bool, 256> needs{};
    for (const unsigned char c : {',', '"', '\r', '\n'}) needs[c] = true;
    return needs;
}();

void PrintCsv(std::string_view utf8, Output& output) {
    if (std::none_of(utf8.begin(), utf8.end(), [](unsigned char c) { return kNeedsQuotes[c]; })) {
        output.Append(utf8);
        return;
    }
    output.Append('"');
    for (auto quote = utf8.find('"'); quote != utf8.npos; quote = utf8.find('"')) {
        output.Append(utf8.substr(0, quote + 1));
        output.Append('"');
        utf8.remove_prefix(quote + 1);
    }
    output.Append(utf8);
    output.Append('"');
}

void PrintTsv(std::string_view utf8, Output& output) {
    for (const char c : utf8) {
        switch (c) {
            case '\t':
                output.Append("\\t");
                break;
            case '\r':
                output.Append("\\r");
                break;
            case '\n':
                output.Append("\\n");
                break;
            case '\\':
                output.Append("\\\\");
                break;
            default:
                output.Append(c);
        }
    }
}

void AppendTwoDigits(std::int32_t value, std::string& out) {
    out.push_back(static_cast<char>('0' + value / 10));
    out.push_back(static_cast<char>('0' + value % 10));
}

bool IsJson(TableFormat format) { return format == TableFormat::Json || format == TableFormat::JsonLines; }

// The display text is the stored text, but for the line ends of Text and List.
bool ShowsAsStored(FieldType type) {
    switch (type) {
        case FieldType::Checkbox:
        case FieldType::Date:
        case FieldType::Time:
        case FieldType::Phone:
            return false;
        default:
            return true;
    }
}

}  // namespace

RecordPrinter::RecordPrinter(const CQuillaryDoc& doc, TableFormat format, TableTexts texts, Output& output)
    : m_doc(doc),
      m_format(format),
      m_texts(texts),
      m_output(output),
      m_isJson(IsJson(format)),
      m_copiesAscii(doc.Page().KeepsAscii()) {
    for (std::size_t k = 0; k < doc.FieldCount(); ++k) {
        m_showsAsStored[k] =
            texts == TableTexts::Stored || (texts != TableTexts::Cells && ShowsAsStored(doc.TypeOf(k)));
    }
}

void RecordPrinter::AppendIsoDate(std::string_view stored) {
    if (stored.empty()) return;
    const auto day = ReadDay(stored);
    if (!day) {
        m_text.append(stored);
        return;
    }
    const CivilDate date = DayToDate(*day);
    AppendTwoDigits(date.year / 100, m_text);
    AppendTwoDigits(date.year % 100, m_text);
    m_text.push_back('-');
    AppendTwoDigits(date.month, m_text);
    m_text.push_back('-');
    AppendTwoDigits(date.day, m_text);
}

void RecordPrinter::AppendIsoTime(std::string_view stored) {
    const auto minute = ReadMinute(stored);
    if (!minute) {
        if (ReadDecimal(stored) < 0) m_text.append(stored);
        return;
    }
    AppendTwoDigits(*minute / 60, m_text);
    m_text.push_back(':');
    AppendTwoDigits(*minute % 60, m_text);
    m_text.push_back(':');
    AppendTwoDigits(ReadDecimal(stored) % 60, m_text);
}

std::string_view RecordPrinter::TextOf(std::size_t field, std::string_view stored) {
    if (m_texts == TableTexts::Stored) return stored;
    const FieldType type = m_doc.TypeOf(field);
    m_text.clear();
    if (m_texts == TableTexts::Cells) {
        AppendListCell(m_doc, field, stored, m_row, m_display, m_text);
        return m_text;
    }
    if (m_texts == TableTexts::Iso && type == FieldType::Date) {
        AppendIsoDate(stored);
    } else if (m_texts == TableTexts::Iso && type == FieldType::Time) {
        AppendIsoTime(stored);
    } else if (m_texts == TableTexts::Iso && ShowsAsStored(type)) {
        return stored;  // a line end of another kind would not come back as it was
    } else {
        m_doc.AppendDisplay(stored, field, m_text);
    }
    return m_text;
}

bool RecordPrinter::PrintPlain(std::string_view text) {
    if (!m_copiesAscii) return false;
    constexpr std::size_t kQuotes = 2;
    char* const begin = m_output.Room(text.size() + kQuotes);
    char* at = begin;
    if (m_isJson) *at++ = '"';
    if (!CopyPlain(text, at, kMeaningful[static_cast<std::size_t>(m_format)])) return false;
    at += text.size();
    if (m_isJson) *at++ = '"';
    m_output.Took(static_cast<std::size_t>(at - begin));
    return true;
}

void RecordPrinter::PrintSpecial(std::string_view text) {
    m_utf8.clear();
    m_doc.Page().AppendUtf8(text, m_utf8);
    switch (m_format) {
        case TableFormat::Csv:
            PrintCsv(m_utf8, m_output);
            break;
        case TableFormat::Tsv:
            PrintTsv(m_utf8, m_output);
            break;
        case TableFormat::Json:
        case TableFormat::JsonLines:
            m_json.clear();
            AppendJsonString(m_utf8, m_json);
            m_output.Append(m_json);
            break;
    }
}

void RecordPrinter::PrintValue(std::string_view text) {
    if (!PrintPlain(text)) PrintSpecial(text);
}

void RecordPrinter::PrintMissing() {
    if (m_isJson) m_output.Append(m_texts == TableTexts::Stored ? "null" : "\"\"");
}

void RecordPrinter::PrintSeparator() {
    m_output.Append(m_format == TableFormat::Tsv ? '\t' : ',');
    if (m_isJson) m_output.Append(' ');
}

void RecordPrinter::EndRow() {
    constexpr std::string_view kRowEnds[] = {"\r\n", "\n", "]", "]\n"};
    m_output.Append(kRowEnds[static_cast<std::size_t>(m_format)]);
}

void RecordPrinter::Begin() {
    if (m_format == TableFormat::JsonLines) return;
    if (m_format == TableFormat::Json) m_output.Append("{\"fields\": [");
    for (std::size_t k = 0; k < m_doc.FieldCount(); ++k) {
        if (k > 0) PrintSeparator();
        PrintValue(m_doc.Fields()[k].name);
    }
    EndRow();
    if (m_format == TableFormat::Json) m_output.Append(", \"records\": [");
}

void RecordPrinter::Print(const RecordRef& record) {
    if (m_format == TableFormat::Json) m_output.Append(m_row > 0 ? ",\n" : "\n");
    if (m_isJson) m_output.Append('[');
    const std::size_t count = m_doc.FieldCount();
    m_entries.Fill(record.Entries(), count);
    for (std::size_t k = 0; k < count; ++k) {
        if (k > 0) PrintSeparator();
        if (!m_entries.Has(k)) {
            PrintMissing();
            continue;
        }
        const std::string_view stored = m_entries.Text(k);
        if (m_showsAsStored[k] && PrintPlain(stored)) continue;
        PrintValue(TextOf(k, stored));
    }
    EndRow();
    ++m_row;
}

void RecordPrinter::End() {
    if (m_format == TableFormat::Json) m_output.Append(m_row > 0 ? "\n]}\n" : "]}\n");
}

}  // namespace quillary
