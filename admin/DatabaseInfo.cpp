#include "admin/DatabaseInfo.h"

#include "db/FieldValue.h"
#include "db/Password.h"
#include "db/Utf.h"

namespace quillary {

namespace {

// In the file the lock follows the text, and a reader looks for it behind the first byte of this value.
constexpr char16_t kHidesLock = 1;

// Control characters as "U+0001": they look like nothing.
std::string Named(std::u16string_view characters) {
    constexpr std::u16string_view kDigits = u"0123456789ABCDEF";
    std::u16string names;
    for (const char16_t unit : characters) {
        if (unit >= u' ') {
            names += unit;
        } else {
            if (!names.empty()) names += u' ';
            names.append(u"U+00").append({kDigits[unit / 16], kDigits[unit % 16]});
        }
    }
    return WideToUtf8(names);
}

}  // namespace

std::optional<std::string> StoredInfoText(std::u16string_view typed, const AnsiText& page, Failure& failure) {
    std::u16string unstorable;
    const auto stored = page.FromWide(typed, &unstorable);
    if (typed.find(kHidesLock) != typed.npos) unstorable += kHidesLock;
    if (!stored || !unstorable.empty()) {
        failure.Set(Message::UnstorableCharacters, {"the info text", Named(unstorable)});
        return std::nullopt;
    }
    std::string text;
    AppendUniformLines(*stored, text);
    return text;
}

std::int32_t MakeInfoLock(std::u16string_view password, const AnsiText& page) {
    return static_cast<std::int32_t>(HashPassword(kInfoLock, password, page));
}

bool UnlockInfo(std::int32_t& lock, std::u16string_view password, const AnsiText& page, Failure& failure) {
    if (MakeInfoLock(password, page) != lock) {
        failure.Set(Message::WrongLockPassword);
        return false;
    }
    lock = 0;
    return true;
}

}  // namespace quillary
