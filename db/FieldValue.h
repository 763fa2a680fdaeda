// From the stored text of a field to the text that a person sees, and to the numbers that sorting and filtering
// compare.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "db/AnsiText.h"
#include "db/Container.h"
#include "db/FieldType.h"

namespace quillary {

inline constexpr std::string_view kMonthNames[] = {"January",   "February", "March",    "April",
                                                   "May",       "June",     "July",     "August",
                                                   "September", "October",  "November", "December"};

/// Appends the display text, in the code page of `stored`.
void AppendDisplayText(FieldType type, std::string_view stored, DateStyle style, const AnsiText& page,
                       std::string& out);
[[nodiscard]] std::string DisplayText(FieldType type, std::string_view stored, DateStyle style, const AnsiText& page);

/// Appends `text` with every line end, LF or CR LF, as CR LF; a lone CR stays.
void AppendUniformLines(std::string_view text, std::string& out);

/// "TRUE", "1", "YES" or "JA" in any case.
[[nodiscard]] bool IsChecked(std::string_view stored);

/// The decimal value at the start of a text: leading blanks, a sign, digits up to the first other character; no digits
/// give 0, values beyond 32 bits saturate.
[[nodiscard]] std::int32_t ReadDecimal(std::string_view text);

/// The number at the start of a text: blanks, sign, digits with one ".", exponent; nothing readable gives 0, values out
/// of range saturate. The same in every locale.
[[nodiscard]] double ReadNumber(std::string_view text);
/// Whether ReadNumber reads the whole text.
[[nodiscard]] bool IsNumber(std::string_view text);

/// Days since 1 January 1904; nullopt when empty or outside the years 100 to 9999.
[[nodiscard]] std::optional<std::int32_t> ReadDay(std::string_view stored);
/// Minutes since midnight (0..1439) as the display shows them; nullopt for "No Time" and for a negative count.
[[nodiscard]] std::optional<std::int32_t> ReadMinute(std::string_view stored);

struct CivilDate {
    std::int32_t year;  // 100..9999
    int month;          // 1..12
    int day;            // 1..31
};
[[nodiscard]] CivilDate DayToDate(std::int32_t daysSince1904);
/// nullopt for a date that does not exist, or outside the years 100 to 9999.
[[nodiscard]] std::optional<std::int32_t> DateToDay(const CivilDate& date);

/// The digits that are stored in place of a phone number when there are exactly 7 or 10 of them; otherwise the text as
/// it is. A letter anywhere before the end keeps the text.
[[nodiscard]] std::string NormalizePhone(std::string_view text, const AnsiText& page);

}  // namespace quillary
