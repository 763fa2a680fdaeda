#include "cli/ValueEntry.h"

#include <algorithm>

#include "cli/Text.h"
#include "db/FieldValue.h"
#include "db/TextEntry.h"
#include "db/Utf.h"

namespace quillary {

namespace {

Message AppendCount(std::optional<std::int32_t> count, Message refusal, std::string& out) {
    if (!count) return refusal;
    out += std::to_string(*count);
    return Message::None;
}

Message AppendChecked(bool accepted, std::string_view text, Message refusal, std::string& out) {
    if (!accepted) return refusal;
    out.append(text);
    return Message::None;
}

bool IsItem(std::string_view text, const std::vector<std::string>& items) {
    return std::find(items.begin(), items.end(), text) != items.end();
}

}  // namespace

std::string_view EmptyValue(FieldType type) { return type == FieldType::Checkbox ? "false" : ""; }

Message AppendStoredValue(const Field& field, std::string_view given, const EntryRules& rules, std::string& out) {
    if (given.empty()) {
        out.append(EmptyValue(field.type));
        return Message::None;
    }
    switch (field.type) {
        case FieldType::Number:
            return AppendChecked(IsPlainNumber(given), given, Message::NotANumber, out);
        case FieldType::Sequence:
            return AppendChecked(IsPlainInteger(given), given, Message::NotAWholeNumber, out);
        case FieldType::Checkbox: {
            const auto checked = ParseCheckBox(given);
            if (!checked) return Message::NotACheckBox;
            out.append(*checked ? "true" : "false");
            return Message::None;
        }
        case FieldType::Date:
            if (IsNoDate(given)) return Message::None;
            return AppendCount(ParseDate(given, rules.order, rules.century), Message::NotADate, out);
        case FieldType::Time:
            if (IsNoTime(given)) return Message::None;
            return AppendCount(ParseTime(given), Message::NotATime, out);
        case FieldType::List:
            return AppendChecked(IsItem(given, field.options.items), given, Message::NotAListItem, out);
        case FieldType::Phone:
            out.append(NormalizePhone(given, rules.page));
            return Message::None;
        case FieldType::Text:
        case FieldType::EMail:
        case FieldType::WebUrl:
            break;
    }
    out.append(given);
    return Message::None;
}

std::string RefusalText(Message refusal, std::string_view given, const EntryRules& rules) {
    constexpr std::string_view kOrderNames[] = {"month, day, year", "day, month, year", "year, month, day"};
    std::string text = FormatMessage(refusal, {ForMessage(given, rules.page)});
    if (refusal != Message::NotADate) return text;
    for (std::size_t other = 0; other < std::size(kOrderNames); ++other) {
        if (!ParseDate(given, static_cast<DateOrder>(other), rules.century)) continue;
        text.pop_back();
        return text.append(" in the order ")
            .append(kOrderNames[static_cast<std::size_t>(rules.order)])
            .append("; --date-order gives another.");
    }
    return text;
}

std::string ForMessage(std::string_view text, const AnsiText& page) {
    constexpr std::size_t kMostCharacters = 60;
    std::u16string wide = page.ToWide(text.substr(0, 4 * kMostCharacters));
    if (wide.size() > kMostCharacters) {
        wide.resize(kMostCharacters);
        wide += u'\u2026';
    }
    return OneLine(WideToUtf8(wide));
}

}  // namespace quillary
