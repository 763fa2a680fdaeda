#include "cli/ColumnTypes.h"

#include "db/Ascii.h"
#include "db/FieldValue.h"
#include "db/TextEntry.h"

namespace quillary {

namespace {

constexpr int kEarliestCertainYear = 1000;  // "1.13.100" is more likely a version than a day

// Forms that mean the same in every order: YYYY-MM-DD and those that begin with the month's name.
bool HasNoOrder(std::string_view value) {
    const auto firstOther = value.find_first_not_of("0123456789");
    return (firstOther == 4 && value[4] == '-') || (firstOther == 0 && value.front() > '9');
}

DateOrders FittingOrders(std::string_view value, std::optional<int> century, int earliestYear) {
    DateOrders fitting;
    if (HasNoOrder(value)) {
        const auto day = ParseDate(value, DateOrder::YearMonthDay, century);
        return day && DayToDate(*day).year >= earliestYear ? fitting.set() : fitting;
    }
    for (std::size_t order = 0; order < fitting.size(); ++order) {
        const auto day = ParseDate(value, static_cast<DateOrder>(order), century);
        fitting[order] = day && DayToDate(*day).year >= earliestYear;
    }
    return fitting;
}

std::optional<DateOrder> OnlyOrder(const DateOrders& orders) {
    if (orders.count() != 1) return std::nullopt;
    return static_cast<DateOrder>(orders[0] ? 0 : orders[1] ? 1 : 2);
}

// Two digits, a colon, two digits, and what must not get lost behind them: no seconds but ":00".
bool IsCertainTime(std::string_view value) {
    if (!ParseTime(value)) return false;
    const bool half = value.find_first_of("aApP") != value.npos;
    if (!half && (value.size() < 5 || value[2] != ':')) return false;  // "3:45" may be a length
    const auto minutes = value.find(':') + 1;
    const auto seconds = value.find(':', minutes);
    return seconds == value.npos || value.substr(seconds + 1, 2) == "00";
}

bool IsCertainNumber(std::string_view value) {
    if (!IsPlainNumber(value)) return false;
    if (value.front() == '-') value.remove_prefix(1);
    return value.size() < 2 || value[0] != '0' || !IsDigit(value[1]);
}

}  // namespace

void ColumnDateOrder::Add(std::string_view value, int century) {
    const DateOrders fitting = FittingOrders(value, century, 0);
    if (fitting.any()) m_fitting &= fitting;
}

std::optional<DateOrder> ColumnDateOrder::Order() const { return OnlyOrder(m_fitting); }

void ColumnTypeGuess::AddDate(std::string_view value) {
    if (IsNoDate(value)) return;
    m_dateOrders &= FittingOrders(value, std::nullopt, kEarliestCertainYear);
    m_date = m_dateOrders.any();
    m_anyDate = true;
}

void ColumnTypeGuess::AddTime(std::string_view value) {
    if (IsNoTime(value)) return;
    m_time = IsCertainTime(value);
    m_anyTime = true;
}

void ColumnTypeGuess::AddCheckBox(std::string_view value) {
    const auto checked = ParseCheckBox(value);
    const auto letter = static_cast<char>(value.front() | 0x20);
    m_trueOrFalse = m_trueOrFalse && checked && letter == (*checked ? 't' : 'f');
    m_yesOrNo = m_yesOrNo && checked && letter == (*checked ? 'y' : 'n');
}

void ColumnTypeGuess::Add(std::string_view value) {
    if (value.empty()) {
        m_anyEmpty = true;
        return;
    }
    m_anyValue = true;
    if (m_number) m_number = IsCertainNumber(value);
    if (m_trueOrFalse || m_yesOrNo) AddCheckBox(value);
    if (m_time) AddTime(value);
    if (m_date) AddDate(value);
}

FieldType ColumnTypeGuess::Type(std::optional<DateOrder> given) const {
    if (!m_anyValue) return FieldType::Text;
    if (m_number) return FieldType::Number;
    // A check box has no third state, so that an empty value would become "no".
    if ((m_trueOrFalse || m_yesOrNo) && !m_anyEmpty) return FieldType::Checkbox;
    if (m_time && m_anyTime) return FieldType::Time;
    const bool certain = given ? m_dateOrders[static_cast<std::size_t>(*given)]
                               : m_dateOrders.all() || OnlyOrder(m_dateOrders).has_value();
    return m_date && m_anyDate && certain ? FieldType::Date : FieldType::Text;
}

}  // namespace quillary
