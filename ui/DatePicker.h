// The editor of a date that may be missing.
#pragma once

#include <cstdint>

#include "db/Clock.h"
#include "db/UserLocale.h"
#include "ui/ValuePicker.h"

namespace quillary {

class CDatePicker : public CValuePicker {
  public:
    /// `clock` must live as long as the picker.
    CDatePicker(DateOrder order, const Clock& clock, QWidget* parent = nullptr);

    /// Days since 1 January 1904; nullopt when it is empty.
    [[nodiscard]] std::optional<std::int32_t> Day() const;
    /// In the years 100 to 9999.
    void SetDay(std::optional<std::int32_t> day);

    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    [[nodiscard]] QDateTime Start() const override;
    [[nodiscard]] std::optional<QDateTime> Read(const QString& text) const override;

    [[nodiscard]] int MostTyped(Section section) const override;
    [[nodiscard]] std::optional<QDateTime> WithTyped(Section section, int number, int digits) override;
    [[nodiscard]] QDateTime Completed(const QDateTime& value) const override;
    void TypingEnded() override;

  private:
    void PrepareCalendar();

    DateOrder m_order;
    const Clock& m_clock;
    bool m_calendarReady = false;
    std::optional<std::int32_t> m_beforeCalendar;
    bool m_calendarCancelled = false;
    int m_typedDay = 0;  // the month that has it may be typed after it
};

}  // namespace quillary
