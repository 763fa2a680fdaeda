#include "ui/DatePicker.h"

#include <QAbstractSpinBox>
#include <QCalendarWidget>
#include <QFrame>
#include <QRegularExpression>
#include <QScreen>
#include <QTextCharFormat>
#include <QVBoxLayout>
#include <algorithm>

#include "db/FieldValue.h"
#include "db/Messages.h"
#include "db/TextEntry.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr const char* kFormats[] = {"MM/dd/yyyy", "dd.MM.yyyy", "yyyy-MM-dd"};  // in the order of DateOrder

QString FormatOf(DateOrder order) { return QString::fromLatin1(kFormats[static_cast<std::size_t>(order)]); }

QDate ToDate(std::int32_t day) {
    const CivilDate date = DayToDate(day);
    return {date.year, date.month, date.day};
}

CDatePicker::Number ToDay(const QDate& date) { return DateToDay({date.year(), date.month(), date.day()}); }

}  // namespace

CDatePicker::CDatePicker(DateOrder order, const Clock& clock, QWidget* parent)
    : CValuePicker(Arrows::DropDown, FormatOf(order), QStringLiteral("No Date"), parent),
      m_order(order),
      m_clock(clock) {}

CValuePicker::Number CDatePicker::Read(const QString& text) const {
    return ParseDate(text.toStdString(), m_order, CenturyOf(m_clock), ShortYears::Refused);
}

CValuePicker::Number CDatePicker::ReadPasted(const QString& text) const {
    return ParseDate(text.toStdString(), m_order, CenturyOf(m_clock));
}

QString CDatePicker::Write(std::int32_t day) const { return ToDate(day).toString(FormatOf(m_order)); }

QString CDatePicker::RefusalOf(const QString& text) const {
    const QString example = QDate(2004, 12, 31).toString(FormatOf(m_order));
    return FromUtf8(FormatMessage(Message::NotADate, {text.toStdString()})) +
           QStringLiteral(" Write it like %1 or December 31, 2004.").arg(example);
}

// The record list has the month first for everybody.
QString CDatePicker::InWords(std::int32_t day) const {
    return m_order == DateOrder::MonthDayYear ? QString() : QLocale::c().toString(ToDate(day), u"MMMM dd, yyyy");
}

std::int32_t CDatePicker::Start() const { return m_clock.Today(); }

CValuePicker::Number CDatePicker::Stepped(std::int32_t day, QChar part, int steps) const {
    const QDate date = ToDate(day);
    return ToDay(part == u'd' ? date.addDays(steps) : part == u'M' ? date.addMonths(steps) : date.addYears(steps));
}

// Made when it is wanted: a form may have twenty of them.
void CDatePicker::MakeCalendar() {
    auto* frame = new QFrame(this, Qt::Popup);
    frame->setFrameShape(QFrame::Box);
    frame->setAttribute(Qt::WA_NoMouseReplay);  // a press on the arrow ends it
    auto* inside = new QVBoxLayout(frame);
    inside->setContentsMargins({});
    m_calendar = new QCalendarWidget;
    inside->addWidget(m_calendar);
    m_calendar->setLocale(QLocale::c());
    m_calendar->setFirstDayOfWeek(QLocale::system().firstDayOfWeek());
    m_calendar->setVerticalHeaderFormat(QCalendarWidget::NoVerticalHeader);
    m_calendar->setDateRange(QDate(100, 1, 1), QDate(9999, 12, 31));
    const auto choose = [this, frame](const QDate& date) {
        frame->close();
        SetByUser(ToDay(date));
    };
    connect(m_calendar, &QCalendarWidget::clicked, this, choose);
    connect(m_calendar, &QCalendarWidget::activated, this, choose);
}

std::int32_t CDatePicker::Begun() const {
    static const QRegularExpression kBetween(QStringLiteral("[\\W_]+"));
    const std::int32_t before = LastValue().value_or(Start());
    const QStringList typed = Text().split(kBetween, Qt::SkipEmptyParts);
    if (typed.isEmpty()) return before;
    const bool isNamed = typed.front().front().isLetter();
    const bool beginsWithYear = typed.front().size() == 4;
    const QString format =
        isNamed ? QStringLiteral("MMMM dd yyyy") : FormatOf(beginsWithYear ? DateOrder::YearMonthDay : m_order);
    const QStringList rest = QLocale::c().toString(ToDate(before), format).split(kBetween);
    for (qsizetype read = std::min(typed.size(), rest.size()); read > 0; --read) {
        const QStringList parts = typed.first(read) + rest.sliced(read);
        if (const Number day = Read(parts.join(isNamed ? u' ' : u'-'))) return *day;
    }
    return before;
}

void CDatePicker::DropDown() {
    if (!m_calendar) MakeCalendar();
    QTextCharFormat weekend;  // the toolkit's red is for light colours
    weekend.setForeground(Red());
    for (const Qt::DayOfWeek day : {Qt::Saturday, Qt::Sunday}) m_calendar->setWeekdayTextFormat(day, weekend);
    m_calendar->setSelectedDate(ToDate(IsEmpty() ? Start() : Value().value_or(Begun())));
    QWidget& frame = *m_calendar->parentWidget();
    frame.adjustSize();
    const QWidget& line = Editor();
    const QRect room = screen()->availableGeometry();
    QPoint corner = line.mapToGlobal(QPoint(0, line.height()));
    if (corner.y() + frame.height() > room.bottom()) corner = line.mapToGlobal(QPoint(0, -frame.height()));
    corner.setX(std::clamp(corner.x(), room.left(), std::max(room.left(), room.right() - frame.width())));
    frame.move(corner.x(), std::max(corner.y(), room.top()));
    frame.show();
    m_calendar->setFocus();
}

}  // namespace quillary
