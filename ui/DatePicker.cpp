#include "ui/DatePicker.h"

#include <QCalendarWidget>
#include <QKeyEvent>
#include <QSignalBlocker>
#include <algorithm>

#include "db/FieldValue.h"
#include "db/TextEntry.h"

namespace quillary {

namespace {

constexpr const char* kFormats[] = {"MM/dd/yyyy", "dd.MM.yyyy", "yyyy-MM-dd"};  // in the order of DateOrder

// The month's last day for one that it lacks.
QDateTime Midnight(int year, int month, int day) {
    const int last = QDate(year, month, 1).daysInMonth();
    return {QDate(year, month, std::min(day, last)), QTime(0, 0), Qt::UTC};
}

QDateTime FromDay(std::int32_t day) {
    const CivilDate date = DayToDate(day);
    return Midnight(date.year, date.month, date.day);
}

}  // namespace

CDatePicker::CDatePicker(DateOrder order, const Clock& clock, QWidget* parent)
    : CValuePicker(QString::fromLatin1(kFormats[static_cast<std::size_t>(order)]), QStringLiteral("No Date"), parent),
      m_order(order),
      m_clock(clock) {
    Editor().setCalendarPopup(true);
    Editor().setDateRange(QDate(100, 1, 1), QDate(9999, 12, 31));
    SetDay(std::nullopt);
}

std::optional<std::int32_t> CDatePicker::Day() const {
    const auto value = Value();
    if (!value) return std::nullopt;
    const QDate date = value->date();
    return DateToDay({date.year(), date.month(), date.day()});
}

void CDatePicker::SetDay(std::optional<std::int32_t> day) {
    m_typedDay = 0;
    SetValue(day ? std::optional(FromDay(*day)) : std::nullopt);
}

QDateTime CDatePicker::Start() const { return FromDay(m_clock.Today()); }

std::optional<QDateTime> CDatePicker::Read(const QString& text) const {
    const auto day = ParseDate(text.toStdString(), m_order, CenturyOf(m_clock));
    return day ? std::optional(FromDay(*day)) : std::nullopt;
}

int CDatePicker::MostTyped(Section section) const {
    return section == QDateTimeEdit::DaySection ? 31 : section == QDateTimeEdit::MonthSection ? 12 : 0;
}

std::optional<QDateTime> CDatePicker::WithTyped(Section section, int number, int /*digits*/) {
    if (number == 0) return std::nullopt;
    const QDate date = Editor().date();
    if (section == QDateTimeEdit::DaySection) m_typedDay = number;
    return Completed(Midnight(date.year(), section == QDateTimeEdit::MonthSection ? number : date.month(), date.day()));
}

QDateTime CDatePicker::Completed(const QDateTime& value) const {
    const QDate date = value.date();
    return Midnight(date.year(), date.month(), m_typedDay > 0 ? m_typedDay : date.day());
}

void CDatePicker::TypingEnded() {
    CValuePicker::TypingEnded();
    m_typedDay = 0;
}

// Made at the first click only: a form may have twenty of them.
void CDatePicker::PrepareCalendar() {
    QCalendarWidget& calendar = *Editor().calendarWidget();
    calendar.setLocale(QLocale::c());
    calendar.setFirstDayOfWeek(QLocale::system().firstDayOfWeek());
    calendar.setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    calendar.installEventFilter(this);
    m_calendarReady = true;
}

bool CDatePicker::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &Editor()) {
        if (event->type() == QEvent::MouseButtonPress && !IsReadOnly() && !m_calendarReady) PrepareCalendar();
    } else if (event->type() == QEvent::Show) {
        m_beforeCalendar = Day();
        m_calendarCancelled = false;
        if (!m_beforeCalendar) {
            auto* calendar = static_cast<QCalendarWidget*>(watched);
            const QSignalBlocker blocker(calendar);
            calendar->setSelectedDate(Start().date());
        }
    } else if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        m_calendarCancelled = true;
    } else if (event->type() == QEvent::Hide && m_calendarCancelled && Day() != m_beforeCalendar) {
        // The toolkit keeps the day that was passed last.
        SetByUser(m_beforeCalendar ? std::optional(FromDay(*m_beforeCalendar)) : std::nullopt);
    }
    return CValuePicker::eventFilter(watched, event);
}

}  // namespace quillary
