#include "db/NumericEntry.h"

#include <algorithm>

namespace quillary {

namespace {

constexpr std::u16string_view kNumericCharacters = u"0123456789.-";
constexpr char16_t kBackspace = 8;

}  // namespace

bool IsValidNumericText(std::u16string_view text) {
    while (!text.empty() && text.front() == u' ') text.remove_prefix(1);
    while (!text.empty() && text.back() == u' ') text.remove_suffix(1);
    if (!text.empty() && text.front() == u'-') text.remove_prefix(1);
    return text.find(u'-') == text.npos && std::count(text.begin(), text.end(), u'.') <= 1;
}

bool AcceptsNumericKey(char16_t typed) {
    return typed == kBackspace || kNumericCharacters.find(typed) != kNumericCharacters.npos;
}

std::u16string CleanNumericText(std::u16string_view text) {
    const auto begin = text.find_first_of(kNumericCharacters);
    if (begin == text.npos) return {};
    text.remove_prefix(begin);
    text = text.substr(0, text.find_first_not_of(kNumericCharacters));
    return IsValidNumericText(text) ? std::u16string(text) : std::u16string();
}

}  // namespace quillary
