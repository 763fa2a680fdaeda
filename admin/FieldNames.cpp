#include "admin/FieldNames.h"

#include <algorithm>

#include "db/Utf.h"

namespace quillary {

namespace {

bool IsBlank(char16_t unit) { return unit == u' ' || (unit >= u'\t' && unit <= u'\r') || unit == u'\u00A0'; }

std::optional<std::string> Stored(std::u16string_view typed, std::string_view place, const AnsiText& page,
                                  Failure& failure) {
    const std::string text = WideToUtf8(typed);
    if (HasControlCharacter(text)) {
        failure.Set(Message::ControlCharacter, {place});
        return std::nullopt;
    }
    std::u16string unstorable;
    auto stored = page.FromWide(typed, &unstorable);
    if (!stored) failure.Set(Message::UnstorableCharacters, {place, WideToUtf8(unstorable)});
    return stored;
}

}  // namespace

std::optional<std::string> StoredFieldName(std::u16string_view typed, const AnsiText& page, Failure& failure) {
    if (std::all_of(typed.begin(), typed.end(), IsBlank)) {
        failure.Set(Message::BlankFieldName);
        return std::nullopt;
    }
    return Stored(typed, "the name of a field", page, failure);
}

std::optional<std::string> StoredListItem(std::u16string_view typed, const AnsiText& page, Failure& failure) {
    if (typed.find(u';') != typed.npos) {
        failure.Set(Message::SemicolonInItem, {WideToUtf8(typed)});
        return std::nullopt;
    }
    return Stored(typed, "an item of a list", page, failure);
}

}  // namespace quillary
