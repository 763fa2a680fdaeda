// Any bytes as what a person or a table writes for a date, a time or a number: what is read stands for itself when it
// is shown and read again. And as what a field holds that gets another type.
#include <string>

#include "admin/ConvertValue.h"
#include "db/FieldValue.h"
#include "db/TextEntry.h"
#include "fuzz/FuzzCheck.h"

namespace quillary {
namespace {

// The first byte chooses the order of a date's numbers.
void Run(std::string_view bytes) {
    if (bytes.empty()) return;
    const auto order = static_cast<DateOrder>(static_cast<unsigned char>(bytes[0]) % 3);
    const std::string text(bytes.substr(1));
    const AnsiText& page = AnsiText::Windows1252();

    if (const auto day = ParseDate(text, order, 2000)) {
        const std::string stored = std::to_string(*day);
        FUZZ_CHECK(ReadDay(stored) == day && DateToDay(DayToDate(*day)) == day);
        FUZZ_CHECK(ParseDate(DisplayText(FieldType::Date, stored, DateStyle::Long, page), order, 2000) == day);
    }
    if (const auto time = ParseTime(text)) {
        FUZZ_CHECK(*time >= 0 && *time < 24 * 60 * 60 && *time % 60 == 0);
        // Midnight as the count "0" is a time, too.
        const std::string shown = DisplayText(FieldType::Time, std::to_string(*time), DateStyle::Numeric, page);
        FUZZ_CHECK(ParseTime(shown) == time);
    }
    const double number = ReadNumber(text);
    FUZZ_CHECK(number == number && ReadNumber(std::to_string(ReadDecimal(text))) == ReadDecimal(text));
    for (const FieldType type : {FieldType::Date, FieldType::Time, FieldType::Phone, FieldType::Checkbox}) {
        (void)DisplayText(type, text, DateStyle::Long, page);
    }
    const std::string phone = NormalizePhone(text, page);
    FUZZ_CHECK(NormalizePhone(phone, page) == phone);

    std::string day;
    std::string second;
    const DateStyle style = DateStyle::Numeric;
    const Converted asDate = AppendConverted({FieldType::Date, FieldType::Text, order, 2000, style}, text, page, day);
    const Converted asTime =
        AppendConverted({FieldType::Time, FieldType::Text, order, 2000, style}, text, page, second);
    FUZZ_CHECK(day.empty() ? asDate != Converted::Kept || IsNoDate(text) : DateToDay(DayToDate(ReadDay(day).value())));
    FUZZ_CHECK(second.empty() ? asTime != Converted::Kept || IsNoTime(text) : ParseTime(text).has_value());
    for (const FieldTypeInfo& from : AllFieldTypes()) {
        for (const FieldTypeInfo& to : AllFieldTypes()) {
            std::string converted;
            const Conversion conversion{to.type, from.type, order, 2000, style};
            if (AppendConverted(conversion, text, page, converted) == Converted::Emptied) FUZZ_CHECK(converted.empty());
        }
    }
}

}  // namespace
}  // namespace quillary

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    quillary::Run({reinterpret_cast<const char*>(data), size});
    return 0;
}
