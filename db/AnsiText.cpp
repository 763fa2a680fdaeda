#include "db/AnsiText.h"

#include <algorithm>

#include "db/UnicodeTables.h"
#include "db/Utf.h"

namespace quillary {

namespace {

AnsiText::Table Windows1252Table() {
    // 0x80-0x9F; the rest equals Latin-1, the five unassigned bytes too.
    constexpr char16_t kHigh[32] = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                    0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                    0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                    0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};
    AnsiText::Table table{};
    for (std::size_t b = 0; b < table.size(); ++b) {
        table[b] = b >= 0x80 && b < 0xA0 ? kHigh[b - 0x80] : static_cast<char16_t>(b);
    }
    return table;
}

constexpr char kEndMarkByte = '\xFF';

bool IsSendable(char byte) { return byte != '\0'; }
bool IsStorable(char byte) { return byte != kEndMarkByte && byte != '\0'; }

void NoteUnstorable(std::u16string_view character, std::u16string* unstorable) {
    if (unstorable && unstorable->find(character) == unstorable->npos) unstorable->append(character);
}

// One character of UTF-16: a unit, or a surrogate pair.
std::u16string_view CharacterAt(std::u16string_view text, std::size_t i) {
    const bool pair =
        text[i] >= 0xD800 && text[i] < 0xDC00 && i + 1 < text.size() && text[i + 1] >= 0xDC00 && text[i + 1] < 0xE000;
    return text.substr(i, pair ? 2 : 1);
}

}  // namespace

const AnsiText& AnsiText::Windows1252() {
    static const AnsiText page("windows-1252", Windows1252Table());
    return page;
}

AnsiText::AnsiText(std::string name, const Table& table) : m_name(std::move(name)), m_toWide(table) {
    m_fromWide.emplace_back();  // page 0: no character
    for (std::size_t b = 0; b < table.size(); ++b) {
        const char16_t unit = table[b];
        std::string utf8;
        quillary::AppendUtf8(unit, utf8);
        std::copy(utf8.begin(), utf8.end(), m_utf8[b].begin());
        m_utf8Length[b] = static_cast<std::uint8_t>(utf8.size());
        m_isSameInUtf8[b] = utf8.size() == 1 && unit == b;
        m_isLetter[b] = quillary::IsLetter(unit);
        if (unit == kNoCharacter) continue;
        std::uint8_t& page = m_pageOfHighByte[unit >> 8];
        if (page == 0) {
            page = static_cast<std::uint8_t>(m_fromWide.size());
            m_fromWide.emplace_back();
        }
        m_fromWide[page][unit & 0xFF] = static_cast<std::uint8_t>(b);
    }
    for (std::size_t b = 0; b < table.size(); ++b) {
        m_fold[b] = static_cast<std::uint8_t>(b);
        if (table[b] == kNoCharacter) continue;
        // An upper case that the page lacks (a micro sign's) is stood for by the first byte that shares it.
        const char16_t upper = UpperCase(table[b]);
        if (const auto byte = ByteOf(upper)) {
            m_fold[b] = *byte;
        } else {
            const auto first =
                std::find_if(table.begin(), table.end(), [upper](char16_t u) { return UpperCase(u) == upper; });
            m_fold[b] = static_cast<std::uint8_t>(first - table.begin());
        }
    }
    m_keepsAscii = FindOutWhetherItKeepsAscii();
}

AnsiText::AnsiText(std::string name, Converter converter)
    : m_name(std::move(name)), m_converter(std::make_shared<const Converter>(std::move(converter))) {
    m_keepsAscii = FindOutWhetherItKeepsAscii();
}

bool AnsiText::FindOutWhetherItKeepsAscii() const {
    for (char16_t c = 1; c < 0x80; ++c) {
        const std::u16string wide(1, c);
        const std::string bytes(1, static_cast<char>(c));
        if (ToWide(bytes) != wide || FromWide(wide) != bytes) return false;
    }
    return true;
}

std::optional<std::uint8_t> AnsiText::ByteOf(char16_t unit) const {
    const std::uint8_t byte = m_fromWide[m_pageOfHighByte[unit >> 8]][unit & 0xFF];
    if (byte == 0 && unit != 0) return std::nullopt;
    return byte;
}

std::u16string AnsiText::ToWide(std::string_view bytes) const {
    if (m_converter) return m_converter->toWide(bytes);
    std::u16string wide(bytes.size(), u'\0');
    std::transform(bytes.begin(), bytes.end(), wide.begin(), [this](unsigned char b) { return m_toWide[b]; });
    return wide;
}

void AnsiText::AppendUtf8(std::string_view bytes, std::string& out) const {
    if (m_converter) {
        out += WideToUtf8(m_converter->toWide(bytes));
        return;
    }
    for (std::size_t i = 0; i < bytes.size();) {
        std::size_t run = i;
        while (run < bytes.size() && m_isSameInUtf8[static_cast<unsigned char>(bytes[run])]) ++run;
        out.append(bytes, i, run - i);
        if (run < bytes.size()) {
            const auto b = static_cast<unsigned char>(bytes[run++]);
            out.append(m_utf8[b].data(), m_utf8Length[b]);
        }
        i = run;
    }
}

std::string AnsiText::ToUtf8(std::string_view bytes) const {
    std::string utf8;
    AppendUtf8(bytes, utf8);
    return utf8;
}

bool AnsiText::Append(std::u16string_view character, IsAllowed isAllowed, std::string& bytes) const {
    if (!m_converter) {
        const auto byte = character.size() == 1 ? ByteOf(character[0]) : std::nullopt;
        if (!byte || !isAllowed(static_cast<char>(*byte))) return false;
        bytes.push_back(static_cast<char>(*byte));
        return true;
    }
    const auto stored = m_converter->fromWide(character);
    if (!stored || !std::all_of(stored->begin(), stored->end(), isAllowed)) return false;
    bytes += *stored;
    return true;
}

// The whole text at once; false when something in it cannot be stored.
bool AnsiText::StoreSingleBytes(std::u16string_view text, std::string& bytes) const {
    bytes.resize(text.size());
    bool storable = true;
    std::transform(text.begin(), text.end(), bytes.begin(), [&](char16_t unit) {
        const auto byte = static_cast<char>(m_fromWide[m_pageOfHighByte[unit >> 8]][unit & 0xFF]);
        storable = storable && IsStorable(byte);
        return byte;
    });
    return storable;
}

std::string AnsiText::Cut(std::string_view bytes, std::size_t mostBytes) const {
    if (bytes.size() <= mostBytes || IsSingleByte()) return std::string(bytes.substr(0, mostBytes));
    std::u16string wide = ToWide(bytes);
    while (!wide.empty()) {
        wide.pop_back();
        const auto cut = FromWide(wide);
        if (cut && cut->size() <= mostBytes) return *cut;
    }
    return {};
}

std::optional<std::string> AnsiText::FromWide(std::u16string_view text, std::u16string* unstorable) const {
    std::string bytes;
    if (!m_converter && StoreSingleBytes(text, bytes)) return bytes;
    return Encode(text, IsStorable, unstorable);
}

std::optional<std::string> AnsiText::FromWideToSend(std::u16string_view text, std::u16string* unstorable) const {
    return Encode(text, IsSendable, unstorable);
}

std::optional<std::string> AnsiText::Encode(std::u16string_view text, IsAllowed isAllowed,
                                            std::u16string* unstorable) const {
    std::string bytes;
    bool allowed = true;
    for (std::size_t i = 0; i < text.size();) {
        const std::u16string_view character = CharacterAt(text, i);
        i += character.size();
        if (Append(character, isAllowed, bytes)) continue;
        allowed = false;
        NoteUnstorable(character, unstorable);
    }
    if (!allowed) return std::nullopt;
    return bytes;
}

std::string AnsiText::FromWideForHashing(std::u16string_view text) const {
    std::string bytes;
    for (std::size_t i = 0; i < text.size();) {
        const std::u16string_view character = CharacterAt(text, i);
        i += character.size();
        if (!Append(character, IsStorable, bytes)) bytes.push_back('?');
    }
    return bytes;
}

std::u16string AnsiText::Upper(std::u16string_view text) {
    std::u16string upper(text);
    std::transform(upper.begin(), upper.end(), upper.begin(), UpperCase);
    return upper;
}

std::optional<std::string> AnsiText::FoldedBytes(std::u16string_view text) const {
    std::string folded;
    for (const char16_t unit : text) {
        const char16_t upper = UpperCase(unit);
        const auto* found = std::find_if(m_toWide.begin(), m_toWide.end(),
                                         [upper](char16_t u) { return u != kNoCharacter && UpperCase(u) == upper; });
        if (found == m_toWide.end()) return std::nullopt;
        folded.push_back(static_cast<char>(m_fold[static_cast<std::size_t>(found - m_toWide.begin())]));
    }
    return folded;
}

bool AnsiText::HasLetter(std::string_view bytes) const {
    if (!m_converter) {
        return std::any_of(bytes.begin(), bytes.end(), [this](unsigned char b) { return m_isLetter[b]; });
    }
    const std::u16string wide = ToWide(bytes);
    return std::any_of(wide.begin(), wide.end(), quillary::IsLetter);
}

}  // namespace quillary
