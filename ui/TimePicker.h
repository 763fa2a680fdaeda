// The editor of a time of day that may be missing.
#pragma once

#include <cstdint>

#include "db/Clock.h"
#include "ui/ValuePicker.h"

namespace quillary {

class CTimePicker : public CValuePicker {
  public:
    /// `clock` must live as long as the picker.
    explicit CTimePicker(const Clock& clock, QWidget* parent = nullptr);

    /// Since midnight, whole minutes; nullopt when it is empty.
    [[nodiscard]] std::optional<std::int32_t> Seconds() const;
    /// Not negative; whole days and what is less than a minute are dropped.
    void SetSeconds(std::optional<std::int32_t> seconds);

  protected:
    [[nodiscard]] QDateTime Start() const override;
    [[nodiscard]] std::optional<QDateTime> Read(const QString& text) const override;

    [[nodiscard]] int MostTyped(Section section) const override;
    [[nodiscard]] std::optional<QDateTime> WithTyped(Section section, int number, int digits) override;
    /// The "a" of am or the "p" of pm anywhere; their "m" changes nothing.
    [[nodiscard]] std::optional<QDateTime> WithLetter(QChar letter) const override;

  private:
    [[nodiscard]] QDateTime At(std::int32_t seconds) const;

    const Clock& m_clock;
};

}  // namespace quillary
