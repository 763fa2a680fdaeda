#include "platform/posix/CodePages.h"

#include <iconv.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <mutex>
#include <string>

#include "db/Ascii.h"

namespace quillary {

namespace {

constexpr const char* kWide = "UTF-16LE";

// One direction of the system's converter. Its state makes calls exclusive.
class Conversion {
  public:
    Conversion(const char* to, const char* from) : m_handle(iconv_open(to, from)) {}
    ~Conversion() {
        if (IsOpen()) iconv_close(m_handle);
    }
    Conversion(const Conversion&) = delete;
    Conversion& operator=(const Conversion&) = delete;

    [[nodiscard]] bool IsOpen() const { return m_handle != reinterpret_cast<iconv_t>(-1); }

    enum class Outcome { Whole, Undefined, Incomplete };

    /// Appends the conversion of the longest convertible start of `in` and removes that from `in`.
    Outcome Convert(std::string_view& in, std::string& out) {
        const std::lock_guard lock(m_mutex);
        iconv(m_handle, nullptr, nullptr, nullptr, nullptr);
        char* from = const_cast<char*>(in.data());
        std::size_t left = in.size();
        const Outcome outcome = left > 0 ? Step(&from, &left, out) : Outcome::Whole;
        Step(nullptr, nullptr, out);  // some pages hold a character back until they see the next
        in.remove_prefix(in.size() - left);
        return outcome;
    }

  private:
    Outcome Step(char** from, std::size_t* left, std::string& out) {
        for (;;) {
            std::array<char, 1024> chunk;
            char* to = chunk.data();
            std::size_t room = chunk.size();
            const std::size_t result = iconv(m_handle, from, left, &to, &room);
            const int reason = errno;
            out.append(chunk.data(), to);
            if (result != kFailed) return result > 0 ? Outcome::Undefined : Outcome::Whole;
            if (reason != E2BIG) return reason == EINVAL ? Outcome::Incomplete : Outcome::Undefined;
        }
    }

    static constexpr std::size_t kFailed = static_cast<std::size_t>(-1);
    std::mutex m_mutex;
    iconv_t m_handle;
};

std::u16string UnitsOf(const std::string& littleEndian) {
    std::u16string units;
    for (std::size_t i = 0; i + 1 < littleEndian.size(); i += 2) {
        const auto low = static_cast<unsigned char>(littleEndian[i]);
        const auto high = static_cast<unsigned char>(littleEndian[i + 1]);
        units.push_back(static_cast<char16_t>(low | high << 8));
    }
    return units;
}

std::u16string ToWide(Conversion& conversion, std::string_view bytes) {
    std::string out;
    while (conversion.Convert(bytes, out) != Conversion::Outcome::Whole && !bytes.empty()) {
        out += "\xFD\xFF";
        bytes.remove_prefix(1);
    }
    return UnitsOf(out);
}

// A page's two directions do not always agree: the converter stores a backslash as the byte that it reads as a yen
// sign. Such a character is one that the page lacks.
std::optional<std::string> FromWide(Conversion& conversion, Conversion& back, std::u16string_view text) {
    std::string in;
    for (const char16_t unit : text) {
        in.push_back(static_cast<char>(unit & 0xFF));
        in.push_back(static_cast<char>(unit >> 8));
    }
    std::string_view left = in;
    std::string out;
    if (conversion.Convert(left, out) != Conversion::Outcome::Whole || ToWide(back, out) != text) return std::nullopt;
    return out;
}

// A few pages have a currency or overline sign where ASCII has a backslash or tilde.
bool ExtendsAscii(const AnsiText::Table& table) {
    for (char16_t c = 0; c < 0x80; ++c) {
        if (table[c] != c && c != u'\\' && c != u'~') return false;
    }
    return true;
}

}  // namespace

std::optional<AnsiText> CodePageByName(std::string_view name) {
    std::string known(name);
    std::transform(known.begin(), known.end(), known.begin(), AsciiLower);
    // A slash would ask the converter to replace what a page lacks.
    if (known.empty() || known.find_first_not_of("abcdefghijklmnopqrstuvwxyz0123456789-_.:()+") != known.npos) {
        return std::nullopt;
    }
    if (known.find_first_not_of("0123456789") == known.npos) known.insert(0, "cp");
    if (known == "windows-1252" || known == "cp1252" || known == "ms-ansi") return AnsiText::Windows1252();

    const auto toWide = std::make_shared<Conversion>(kWide, known.c_str());
    const auto fromWide = std::make_shared<Conversion>(known.c_str(), kWide);
    if (!toWide->IsOpen() || !fromWide->IsOpen()) return std::nullopt;

    AnsiText::Table table;
    bool isSingleByte = true;
    for (std::size_t b = 0; b < table.size(); ++b) {
        const char byte = static_cast<char>(b);
        std::string_view left(&byte, 1);
        std::string out;
        const auto outcome = toWide->Convert(left, out);
        const std::u16string units = outcome == Conversion::Outcome::Whole ? UnitsOf(out) : std::u16string{};
        isSingleByte = isSingleByte && outcome != Conversion::Outcome::Incomplete && units.size() <= 1;
        table[b] = units.size() == 1 ? units[0] : AnsiText::kNoCharacter;
    }
    if (!ExtendsAscii(table)) return std::nullopt;
    if (isSingleByte) return AnsiText(known, table);
    return AnsiText(known,
                    AnsiText::Converter{
                        [toWide](std::string_view bytes) { return ToWide(*toWide, bytes); },
                        [fromWide, toWide](std::u16string_view text) { return FromWide(*fromWide, *toWide, text); },
                    });
}

}  // namespace quillary
