// The user's date order, from the C library's locale. The window asks here too, as its toolkit answers differently for
// some locales.
#pragma once

#include <string_view>

#include "db/UserLocale.h"

namespace quillary {

/// The order of day, month and year in a strftime format; month first when it does not tell.
[[nodiscard]] DateOrder OrderOfDateFormat(std::string_view format);

class PosixLocale : public UserLocale {
  public:
    /// LC_ALL, LC_TIME or LANG decide, whether or not the process called setlocale. Month first for the C locale and
    /// one that is not installed.
    PosixLocale();
    DateOrder Order() const override { return m_order; }

  private:
    DateOrder m_order;
};

}  // namespace quillary
