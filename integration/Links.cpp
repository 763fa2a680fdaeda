#include "integration/Links.h"

#include <algorithm>
#include <array>

#include "db/Ascii.h"

namespace quillary {

namespace {

constexpr std::string_view kMailTo = "mailto:";

std::optional<std::string> Refuse(Message why, Failure& failure) {
    failure.Set(why);
    return std::nullopt;
}

bool IsControl(char c) { return static_cast<unsigned char>(c) < 0x20 || c == 0x7F; }

/// U+0080 to U+009F, and the line and paragraph separators, are two or three bytes.
bool HasControl(std::string_view text) {
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (IsControl(text[i])) return true;
        const std::string_view rest = text.substr(i);
        if (rest.starts_with("\xE2\x80\xA8") || rest.starts_with("\xE2\x80\xA9")) return true;
        if (rest.size() > 1 && rest[0] == '\xC2' && static_cast<unsigned char>(rest[1]) < 0xA0) return true;
    }
    return false;
}

std::string_view Trimmed(std::string_view text) {
    while (text.starts_with(' ')) text.remove_prefix(1);
    while (text.ends_with(' ')) text.remove_suffix(1);
    return text;
}

std::string Lower(std::string_view text) {
    std::string lower(text);
    std::transform(lower.begin(), lower.end(), lower.begin(), AsciiLower);
    return lower;
}

void AppendEncoded(char c, std::string& out) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    const auto byte = static_cast<unsigned char>(c);
    out += '%';
    out += kDigits[byte >> 4];
    out += kDigits[byte & 15];
}

// ---- Mail

/// "%0D" and the like, which some programs take for the end of a header.
bool HasEncodedControl(std::string_view text) {
    for (auto at = text.find('%'); at != text.npos; at = text.find('%', at + 1)) {
        const std::string_view digits = text.substr(at + 1, 2);
        const bool isHex = digits.size() == 2 && (IsDigit(digits[1]) || IsAsciiLetter(digits[1]));
        if (isHex && (digits[0] == '0' || digits[0] == '1')) return true;
    }
    return false;
}

/// Of one "name=value".
bool IsHarmlessHeader(std::string_view header) {
    constexpr std::array<std::string_view, 4> kHarmless = {"body", "cc", "keywords", "subject"};
    const std::string name = Lower(header.substr(0, header.find('=')));
    if (std::find(kHarmless.begin(), kHarmless.end(), name) == kHarmless.end()) return false;
    return name == "body" || !HasEncodedControl(header);
}

bool AreHarmlessHeaders(std::string_view headers) {
    while (!headers.empty()) {
        const auto end = std::min(headers.find('&'), headers.size());
        if (!IsHarmlessHeader(headers.substr(0, end))) return false;
        headers.remove_prefix(std::min(end + 1, headers.size()));
    }
    return true;
}

// ---- Web

/// The letters before the first ":", when they could be a scheme.
std::string SchemeOf(std::string_view text) {
    const auto colon = text.find(':');
    if (colon == text.npos || colon == 0 || !IsAsciiLetter(text[0])) return {};
    const std::string_view scheme = text.substr(0, colon);
    const bool fits = std::all_of(scheme.begin(), scheme.end(), [](char c) {
        return IsAsciiLetter(c) || IsDigit(c) || c == '+' || c == '-' || c == '.';
    });
    return fits ? Lower(scheme) : std::string();
}

/// "example.org:8080/list": what looks like a scheme is a host, and a port follows.
bool IsHostWithPort(std::string_view text, std::string_view scheme) {
    if (scheme.find('.') == scheme.npos && scheme != "localhost") return false;
    const std::string_view rest = text.substr(scheme.size() + 1);
    const auto end = std::find_if_not(rest.begin(), rest.end(), IsDigit);
    return end != rest.begin() && (end == rest.end() || *end == '/' || *end == '?' || *end == '#');
}

/// As a host's name or number begins.
bool BeginsLikeHost(std::string_view text) {
    if (text.empty()) return false;
    const char c = text[0];
    return IsAsciiLetter(c) || IsDigit(c) || c == '[' || static_cast<unsigned char>(c) >= 0x80;
}

/// What stands for itself in no address. A program that is a shell's script may not be careful with quotes.
bool IsEncodedInWeb(char c) { return std::string_view(" \"'<>\\^`{|}").find(c) != std::string_view::npos; }

}  // namespace

std::string PhoneLink(std::string_view number) {
    constexpr std::string_view kItself = "+-.()*,_~";
    std::string link = "tel:";
    for (const char c : number) {
        if (c == ' ' || IsControl(c)) continue;
        if (IsDigit(c) || IsAsciiLetter(c) || kItself.find(c) != kItself.npos) {
            link += c;
        } else {
            AppendEncoded(c, link);
        }
    }
    return link;
}

std::optional<std::string> MailLink(std::string_view address, Failure& failure) {
    if (Trimmed(address).empty()) return std::nullopt;
    if (HasControl(address)) return Refuse(Message::ControlInLink, failure);
    if (Lower(address.substr(0, kMailTo.size())) == kMailTo) address.remove_prefix(kMailTo.size());
    const auto question = std::min(address.find('?'), address.size());
    const std::string_view headers = address.substr(std::min(question + 1, address.size()));
    if (HasEncodedControl(address.substr(0, question)) || !AreHarmlessHeaders(headers)) {
        return Refuse(Message::MailDoesMore, failure);
    }
    return std::string(kMailTo).append(address);
}

std::optional<std::string> WebLink(std::string_view address, Failure& failure) {
    address = Trimmed(address);
    if (address.empty()) return std::nullopt;
    if (HasControl(address)) return Refuse(Message::ControlInLink, failure);
    const std::string scheme = SchemeOf(address);
    if (scheme == "mailto") return MailLink(address, failure);
    std::string link;
    std::string_view rest = address;
    if (!scheme.empty() && !IsHostWithPort(address, scheme)) {
        if (scheme != "http" && scheme != "https") return Refuse(Message::NotAWebAddress, failure);
        rest.remove_prefix(scheme.size() + 1);
        if (!rest.starts_with("//")) return Refuse(Message::NotAWebAddress, failure);
        link = scheme + ':';
    } else {
        link = "http:";
    }
    if (rest.starts_with("//")) rest.remove_prefix(2);
    if (!BeginsLikeHost(rest)) return Refuse(Message::NotAWebAddress, failure);
    link += "//";
    for (const char c : rest) IsEncodedInWeb(c) ? AppendEncoded(c, link) : link.push_back(c);
    return link;
}

}  // namespace quillary
