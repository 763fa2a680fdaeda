// The editor of a date that may be missing.
#pragma once

#include "db/Clock.h"
#include "db/UserLocale.h"
#include "ui/ValuePicker.h"

class QCalendarWidget;

namespace quillary {

class CDatePicker : public CValuePicker {
  public:
    /// `clock` must live as long as the picker.
    CDatePicker(DateOrder order, const Clock& clock, QWidget* parent = nullptr);

    /// Days since 1 January 1904; nullopt when it is empty or unreadable.
    [[nodiscard]] Number Day() const { return Value(); }
    /// In the years 100 to 9999.
    void SetDay(Number day) { SetValue(day); }

  protected:
    [[nodiscard]] Number Read(const QString& text) const override;
    [[nodiscard]] Number ReadPasted(const QString& text) const override;
    [[nodiscard]] QString Write(std::int32_t day) const override;
    [[nodiscard]] QString RefusalOf(const QString& text) const override;
    [[nodiscard]] QString InWords(std::int32_t day) const override;
    [[nodiscard]] std::int32_t Start() const override;
    [[nodiscard]] Number Stepped(std::int32_t day, QChar part, int steps) const override;
    /// The calendar.
    void DropDown() override;

  private:
    void MakeCalendar();
    /// What can be read of a date that is not typed to its end; what cannot is that of the day before.
    [[nodiscard]] std::int32_t Begun() const;

    const DateOrder m_order;
    const Clock& m_clock;
    QCalendarWidget* m_calendar = nullptr;
};

}  // namespace quillary
