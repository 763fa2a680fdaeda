#include "platform/posix/PosixLocale.h"

#include <langinfo.h>
#include <locale.h>

#include <string>

namespace quillary {

DateOrder OrderOfDateFormat(std::string_view format) {
    // The order in which day, month and year are named first: "%d.%m.%Y", "%-e. %b %Ey".
    std::string order;
    const auto note = [&order](std::string_view parts) {
        for (const char part : parts) {
            if (order.find(part) == order.npos) order.push_back(part);
        }
    };
    for (std::size_t i = format.find('%'); i < format.size(); i = format.find('%', i)) {
        i = format.find_first_not_of("_-0^#+123456789EO", i + 1);
        if (i >= format.size()) break;
        switch (format[i++]) {
            case 'd':
            case 'e':
                note("d");
                break;
            case 'm':
            case 'b':
            case 'B':
            case 'h':
                note("m");
                break;
            case 'y':
            case 'Y':
            case 'C':
            case 'G':
            case 'g':
                note("y");
                break;
            case 'D':
                note("mdy");
                break;
            case 'F':
                note("ymd");
                break;
            default:
                break;
        }
    }
    if (order == "dmy") return DateOrder::DayMonthYear;
    if (order == "ymd") return DateOrder::YearMonthDay;
    return DateOrder::MonthDayYear;
}

PosixLocale::PosixLocale() : m_order(DateOrder::MonthDayYear) {
    const locale_t locale = newlocale(LC_TIME_MASK, "", locale_t{});
    if (!locale) return;
    m_order = OrderOfDateFormat(nl_langinfo_l(D_FMT, locale));
    freelocale(locale);
}

}  // namespace quillary
