// The editor of a time of day that may be missing.
#pragma once

#include "db/Clock.h"
#include "ui/ValuePicker.h"

namespace quillary {

class CTimePicker : public CValuePicker {
  public:
    /// `clock` must live as long as the picker.
    explicit CTimePicker(const Clock& clock, QWidget* parent = nullptr);

    /// Since midnight, whole minutes; nullopt when it is empty or unreadable.
    [[nodiscard]] Number Seconds() const { return Value(); }
    /// Not negative; whole days and what is less than a minute are dropped.
    void SetSeconds(Number seconds) { SetValue(seconds); }

  protected:
    [[nodiscard]] Number Read(const QString& text) const override;
    [[nodiscard]] QString Write(std::int32_t seconds) const override;
    [[nodiscard]] QString RefusalOf(const QString& text) const override;
    [[nodiscard]] std::int32_t Start() const override;
    [[nodiscard]] Number Stepped(std::int32_t seconds, QChar part, int steps) const override;

  private:
    const Clock& m_clock;
};

}  // namespace quillary
