#include "db/Utf.h"

namespace quillary {

void AppendUtf8(char32_t codePoint, std::string& out) {
    const auto put = [&out](char32_t value) { out.push_back(static_cast<char>(value)); };
    if (codePoint < 0x80) {
        put(codePoint);
    } else if (codePoint < 0x800) {
        put(0xC0 | codePoint >> 6);
        put(0x80 | (codePoint & 0x3F));
    } else if (codePoint < 0x10000) {
        put(0xE0 | codePoint >> 12);
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    } else {
        put(0xF0 | codePoint >> 18);
        put(0x80 | (codePoint >> 12 & 0x3F));
        put(0x80 | (codePoint >> 6 & 0x3F));
        put(0x80 | (codePoint & 0x3F));
    }
}

std::optional<std::u16string> Utf8ToWide(std::string_view utf8) {
    std::u16string wide;
    wide.reserve(utf8.size());
    for (std::size_t i = 0; i < utf8.size();) {
        const auto lead = static_cast<unsigned char>(utf8[i]);
        std::size_t more = 0;
        char32_t codePoint = lead;
        char32_t least = 0;
        if (lead >= 0xF0 && lead < 0xF5) {
            more = 3, codePoint = lead & 0x07, least = 0x10000;
        } else if (lead >= 0xE0 && lead < 0xF0) {
            more = 2, codePoint = lead & 0x0F, least = 0x800;
        } else if (lead >= 0xC2 && lead < 0xE0) {
            more = 1, codePoint = lead & 0x1F, least = 0x80;
        } else if (lead >= 0x80) {
            return std::nullopt;
        }
        if (utf8.size() - i <= more) return std::nullopt;
        for (std::size_t k = 1; k <= more; ++k) {
            const auto next = static_cast<unsigned char>(utf8[i + k]);
            if ((next & 0xC0) != 0x80) return std::nullopt;
            codePoint = codePoint << 6 | (next & 0x3F);
        }
        if (codePoint < least || codePoint > 0x10FFFF || (codePoint >= 0xD800 && codePoint < 0xE000))
            return std::nullopt;
        if (codePoint < 0x10000) {
            wide.push_back(static_cast<char16_t>(codePoint));
        } else {
            wide.push_back(static_cast<char16_t>(0xD7C0 + (codePoint >> 10)));
            wide.push_back(static_cast<char16_t>(0xDC00 + (codePoint & 0x3FF)));
        }
        i += more + 1;
    }
    return wide;
}

bool HasControlCharacter(std::string_view utf8) {
    for (std::size_t i = 0; i < utf8.size(); ++i) {
        const auto byte = static_cast<unsigned char>(utf8[i]);
        if (byte < 0x20 || byte == 0x7F) return true;
        // U+0080 to U+009F are 0xC2 and a byte below 0xA0.
        if (byte == 0xC2 && i + 1 < utf8.size() && static_cast<unsigned char>(utf8[i + 1]) < 0xA0) return true;
    }
    return false;
}

std::string WideToUtf8(std::u16string_view wide) {
    std::string utf8;
    utf8.reserve(wide.size());
    for (std::size_t i = 0; i < wide.size(); ++i) {
        char32_t unit = wide[i];
        if (unit >= 0xD800 && unit < 0xE000) {
            const bool paired = unit < 0xDC00 && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 && wide[i + 1] < 0xE000;
            unit = paired ? 0x10000 + ((unit - 0xD800) << 10) + (wide[++i] - 0xDC00) : 0xFFFD;
        }
        AppendUtf8(unit, utf8);
    }
    return utf8;
}

}  // namespace quillary
