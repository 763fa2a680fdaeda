#include "ui/TimePicker.h"

#include <QTime>

#include "db/Messages.h"
#include "db/TextEntry.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr std::int32_t kDay = 24 * 60 * 60;  // seconds

}  // namespace

CTimePicker::CTimePicker(const Clock& clock, QWidget* parent)
    : CValuePicker(Arrows::Step, QStringLiteral("hh:mm aa"), QStringLiteral("No Time"), parent), m_clock(clock) {}

CValuePicker::Number CTimePicker::Read(const QString& text) const { return ParseTime(text.toStdString()); }

QString CTimePicker::Write(std::int32_t seconds) const {
    return QTime::fromMSecsSinceStartOfDay(seconds % kDay * 1000).toString(QStringLiteral("hh:mm ap"));
}

QString CTimePicker::RefusalOf(const QString& text) const {
    return FromUtf8(FormatMessage(Message::NotATime, {text.toStdString()})) +
           QStringLiteral(" Write it like 02:30 pm or 14:30.");
}

std::int32_t CTimePicker::Start() const { return m_clock.SecondsSinceMidnight(); }

CValuePicker::Number CTimePicker::Stepped(std::int32_t seconds, QChar part, int steps) const {
    const std::int32_t stepped = seconds + steps * (part == u'h' ? 60 * 60 : part == u'm' ? 60 : kDay / 2);
    return stepped < 0 || stepped >= kDay ? std::nullopt : Number(stepped);
}

}  // namespace quillary
