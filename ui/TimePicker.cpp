#include "ui/TimePicker.h"

#include "db/TextEntry.h"

namespace quillary {

CTimePicker::CTimePicker(const Clock& clock, QWidget* parent)
    : CValuePicker(QStringLiteral("hh:mm ap"), QStringLiteral("No Time"), parent), m_clock(clock) {
    SetSeconds(std::nullopt);
}

std::optional<std::int32_t> CTimePicker::Seconds() const {
    const auto value = Value();
    if (!value) return std::nullopt;
    return value->time().msecsSinceStartOfDay() / 60'000 * 60;
}

void CTimePicker::SetSeconds(std::optional<std::int32_t> seconds) {
    SetValue(seconds ? std::optional(At(*seconds)) : std::nullopt);
}

// On the one day that the editor knows when it shows no date.
QDateTime CTimePicker::At(std::int32_t seconds) const {
    return {Editor().minimumDate(), QTime::fromMSecsSinceStartOfDay(seconds / 60 % (24 * 60) * 60'000), Qt::UTC};
}

QDateTime CTimePicker::Start() const { return At(m_clock.SecondsSinceMidnight()); }

int CTimePicker::MostTyped(Section section) const {
    return section == QDateTimeEdit::HourSection ? 23 : section == QDateTimeEdit::MinuteSection ? 59 : 0;
}

std::optional<QDateTime> CTimePicker::WithTyped(Section section, int number, int digits) {
    const QTime time = Editor().time();
    if (section == QDateTimeEdit::MinuteSection) return At((time.hour() * 60 + number) * 60);
    if (number == 0 && digits == 1) return std::nullopt;
    // 1 to 12 stay before or after noon.
    const int hour = number == 0 || number > 12 ? number : number % 12 + time.hour() / 12 * 12;
    return At((hour * 60 + time.minute()) * 60);
}

std::optional<QDateTime> CTimePicker::WithLetter(QChar letter) const {
    const QTime time = Editor().time();
    const QChar lower = letter.toLower();
    if (lower != u'a' && lower != u'p' && lower != u'm') return std::nullopt;
    const int half = lower == u'a' ? 0 : lower == u'p' ? 1 : time.hour() / 12;
    return At(((time.hour() % 12 + half * 12) * 60 + time.minute()) * 60);
}

std::optional<QDateTime> CTimePicker::Read(const QString& text) const {
    const auto seconds = ParseTime(text.toStdString());
    return seconds ? std::optional(At(*seconds)) : std::nullopt;
}

}  // namespace quillary
