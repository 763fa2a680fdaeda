// The boundary between the file's 8-bit code page and Unicode. Windows-1252 is built in; other pages are built from a
// table (single-byte) or a converter (multi-byte).
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace quillary {

class AnsiText {
  public:
    static constexpr char16_t kNoCharacter = 0xFFFD;
    using Table = std::array<char16_t, 256>;

    /// A multi-byte page. Both are pure functions; `fromWide` answers nullopt for a text with a character that the page
    /// lacks.
    struct Converter {
        std::function<std::u16string(std::string_view)> toWide;  // undefined bytes become U+FFFD
        std::function<std::optional<std::string>(std::u16string_view)> fromWide;
    };

    /// The five unassigned bytes are the control characters of the same number, both ways.
    [[nodiscard]] static const AnsiText& Windows1252();

    /// A single-byte page: byte b is `table[b]`, kNoCharacter where the page has none.
    AnsiText(std::string name, const Table& table);
    AnsiText(std::string name, Converter converter);

    [[nodiscard]] const std::string& Name() const { return m_name; }
    [[nodiscard]] bool IsSingleByte() const { return !m_converter; }
    /// Whether ASCII texts without NUL are the same bytes in UTF-8 and in the page, both ways. Not in pages that have a
    /// currency sign in a backslash's place.
    [[nodiscard]] bool KeepsAscii() const { return m_keepsAscii; }

    [[nodiscard]] std::u16string ToWide(std::string_view bytes) const;
    void AppendUtf8(std::string_view bytes, std::string& out) const;
    [[nodiscard]] std::string ToUtf8(std::string_view bytes) const;

    /// At most so many bytes of `bytes`, never cut inside a character.
    [[nodiscard]] std::string Cut(std::string_view bytes, std::size_t mostBytes) const;

    /// The bytes that store `text`, or nullopt when it holds a character that the page lacks or stores with a byte FF
    /// or 00 (U+00FF in Windows-1252); `unstorable` then receives these characters, each once.
    [[nodiscard]] std::optional<std::string> FromWide(std::u16string_view text,
                                                      std::u16string* unstorable = nullptr) const;

    /// As FromWide, for a text that no record holds: a byte FF is one like others.
    [[nodiscard]] std::optional<std::string> FromWideToSend(std::u16string_view text,
                                                            std::u16string* unstorable = nullptr) const;

    /// As FromWide, but each character that cannot be stored becomes "?". For passwords alone.
    [[nodiscard]] std::string FromWideForHashing(std::u16string_view text) const;

    /// Upper case, one unit to one unit.
    [[nodiscard]] static std::u16string Upper(std::u16string_view text);

    // Single-byte pages only: what sorting, filtering and finding use to work on bytes.

    /// Bytes with equal entries are the same character when case is ignored.
    [[nodiscard]] const std::array<std::uint8_t, 256>& Fold() const { return m_fold; }
    /// The UTF-16 unit of each byte: ordinal order is by it, and 0x80-0x9F are not in order.
    [[nodiscard]] const Table& Units() const { return m_toWide; }
    /// `text` as folded bytes, or nullopt when no stored text can hold a character of it.
    [[nodiscard]] std::optional<std::string> FoldedBytes(std::u16string_view text) const;

    /// True when `bytes` hold a letter.
    [[nodiscard]] bool HasLetter(std::string_view bytes) const;

  private:
    [[nodiscard]] std::optional<std::uint8_t> ByteOf(char16_t unit) const;
    [[nodiscard]] bool FindOutWhetherItKeepsAscii() const;
    [[nodiscard]] bool StoreSingleBytes(std::u16string_view text, std::string& bytes) const;
    using IsAllowed = bool (*)(char byte);
    [[nodiscard]] std::optional<std::string> Encode(std::u16string_view text, IsAllowed isAllowed,
                                                    std::u16string* unstorable) const;
    /// Appends its bytes; false, with nothing appended, for a character that the page lacks or whose bytes are not
    /// allowed.
    [[nodiscard]] bool Append(std::u16string_view character, IsAllowed isAllowed, std::string& bytes) const;

    std::string m_name;
    std::shared_ptr<const Converter> m_converter;  // null for a single-byte page
    bool m_keepsAscii = false;
    Table m_toWide{};
    std::array<std::uint8_t, 65536 / 256> m_pageOfHighByte{};  // index into m_fromWide
    std::vector<std::array<std::uint8_t, 256>> m_fromWide;     // 0 = no such character
    std::array<std::uint8_t, 256> m_fold{};
    std::array<bool, 256> m_isLetter{};
    std::array<std::array<char, 3>, 256> m_utf8{};
    std::array<std::uint8_t, 256> m_utf8Length{};
    std::array<bool, 256> m_isSameInUtf8{};
};

}  // namespace quillary
