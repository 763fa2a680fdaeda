// What the values of a table's column say about its type and about the order of its dates.
#pragma once

#include <bitset>
#include <optional>
#include <string_view>

#include "db/FieldType.h"
#include "db/UserLocale.h"

namespace quillary {

/// The orders in which dates given as numbers can be read.
using DateOrders = std::bitset<3>;

/// The order of a column's dates: the only one that all its values fit.
class ColumnDateOrder {
  public:
    /// A value that is no date in any order is left out of account.
    void Add(std::string_view value, int century);
    [[nodiscard]] std::optional<DateOrder> Order() const;

  private:
    DateOrders m_fitting = DateOrders().set();
};

/// The type of a column whose values are all that is known of it. A doubt makes Text.
class ColumnTypeGuess {
  public:
    void Add(std::string_view value);
    /// `given` is the order that dates are known to have.
    [[nodiscard]] FieldType Type(std::optional<DateOrder> given) const;

  private:
    void AddDate(std::string_view value);
    void AddTime(std::string_view value);
    void AddCheckBox(std::string_view value);

    bool m_anyValue = false;
    bool m_anyEmpty = false;
    bool m_number = true;
    bool m_trueOrFalse = true;
    bool m_yesOrNo = true;
    bool m_time = true;
    bool m_anyTime = false;
    bool m_date = true;
    bool m_anyDate = false;
    DateOrders m_dateOrders = DateOrders().set();
};

}  // namespace quillary
