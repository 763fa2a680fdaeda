// The editors of single values, used by real keys, clicks and the clipboard.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCalendarWidget>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QElapsedTimer>
#include <QInputMethodEvent>
#include <QMenu>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "ui/DatePicker.h"
#include "ui/NumericEdit.h"
#include "ui/QLYButton.h"
#include "ui/QLYComboBox.h"
#include "ui/TextEdit.h"
#include "ui/TimePicker.h"

namespace quillary {
namespace {

constexpr std::int32_t kToday = 44615;           // 24 February 2026
constexpr std::int32_t kNow = 14 * 3600 + 1530;  // 02:25:30 pm

class FixedClock : public Clock {
  public:
    std::int32_t Today() const override { return kToday; }
    std::int32_t SecondsSinceMidnight() const override { return kNow; }
};

/// An editor under a line that can take the focus from it.
template <class T>
class Desk {
  public:
    template <class... Arguments>
    explicit Desk(const Arguments&... arguments) : editor(*new T(arguments...)) {
        auto* column = new QVBoxLayout(&m_window);
        column->addWidget(&m_other);
        column->addWidget(&editor);
        m_window.show();
        m_window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&m_window));
        editor.setFocus();
    }
    /// One key for each character; "<" selects all, "^" deletes, "V" pastes, "+" goes up, "~" is Return.
    void Press(const char* keys) {
        for (const char* key = keys; *key != '\0'; ++key) {
            QWidget* to = m_window.focusWidget();
            switch (*key) {
                case '<':
                    QTest::keyClick(to, Qt::Key_A, Qt::ControlModifier);
                    break;
                case '^':
                    QTest::keyClick(to, Qt::Key_Delete);
                    break;
                case 'V':
                    QTest::keyClick(to, Qt::Key_V, Qt::ControlModifier);
                    break;
                case '+':
                    QTest::keyClick(to, Qt::Key_Up);
                    break;
                case '~':
                    QTest::keyClick(to, Qt::Key_Return);
                    break;
                default:
                    QTest::keyClick(to, *key);
            }
        }
    }
    void Leave() { m_other.setFocus(); }

  private:
    QWidget m_window;
    QLineEdit m_other;

  public:
    T& editor;
};

void Roll(QWidget& widget) {
    const QPointF middle = widget.rect().center();
    QWheelEvent event(middle, widget.mapToGlobal(middle), {}, {0, -120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&widget, &event);
}

TEST(NumericEdit, KeysAndLeaving) {
    const struct {
        const char* name;
        const char* before;
        const char* clipboard;
        const char* keys;
        const char* typed;
        const char* left;
    } kCases[] = {
        {"digits, a sign and a point", "", "", "-12.5", "-12.5", "-12.5"},
        {"a second point", "12.5", "", ".", "12.5", "12.5"},
        {"a sign behind", "12", "", "-", "12", "12"},
        {"letters and what lies beside the digits", "12", "", "a+,/:e", "12", "12"},
        {"Return writes nothing", "12", "", "~", "12", "12"},
        {"a refused text keeps the selection", "12.5", "1-2", "<V3", "3", "3"},
        {"pasted letters stay until it is left", "", "abc12x3", "V", "abc12x3", "12"},
        {"nothing is left of no number", "", "-.-", "V", "", ""},
        {"what the user did not touch stays", "abc12x3", "", "", "abc12x3", "abc12x3"},
        {"what the user touched does not", "abc12x3", "", "4", "abc12x34", "12"},
        {"an invalid text stays whole", "1-2", "", "3", "1-2", "1-2"},
        {"what the user put back stays", "1,500", "", "4\b", "1,500", "1,500"},
    };
    for (const auto& c : kCases) {
        Desk<CNumericEdit> desk;
        QApplication::clipboard()->setText(c.clipboard);
        desk.editor.setText(c.before);
        desk.Press(c.keys);
        EXPECT_EQ(desk.editor.text(), c.typed) << c.name;
        desk.Leave();
        EXPECT_EQ(desk.editor.text(), c.left) << c.name;
    }
}

TEST(TextEdit, GivesBackWhatItWasGiven) {
    CTextEdit edit;
    for (const char16_t* text : {u"", u"a\u00A0b", u"lone\rreturn\r", u"two\r\nlines\r\n", u"\r\r\n\r",
                                 u"tab\tand\u001B", u"line\u2028and paragraph\u2029"}) {
        const QString given = QString::fromUtf16(text);
        edit.SetText(given);
        EXPECT_EQ(edit.Text(), given) << given.toStdString();
        edit.selectAll();
        edit.copy();
        edit.paste();  // of itself over itself
        EXPECT_EQ(edit.Text(), given) << given.toStdString();
    }
}

TEST(TextEdit, KeysWriteAndTabLeaves) {
    Desk<CTextEdit> desk;
    CTextEdit& edit = desk.editor;
    edit.CapitalizeFirst(true);
    desk.Press("ab~c");
    QTest::keyClick(&edit, Qt::Key_Return, Qt::ShiftModifier);
    desk.Press("d");
    EXPECT_EQ(edit.Text(), "Ab\r\nc\r\nd");
    desk.Press("<e");
    EXPECT_EQ(edit.Text(), "E") << "typed over everything";
    desk.Press("<^1a");
    EXPECT_EQ(edit.Text(), "1a") << "a digit came first";
    edit.SetText({});
    QInputMethodEvent composed;
    composed.setCommitString(QStringLiteral("é"));
    QApplication::sendEvent(&edit, &composed);
    EXPECT_EQ(edit.Text(), QStringLiteral("É"));
    edit.CapitalizeFirst(false);
    desk.Press("<^x");
    EXPECT_EQ(edit.Text(), "x");
    QTest::keyClick(&edit, Qt::Key_Tab);
    EXPECT_FALSE(edit.hasFocus());
    EXPECT_EQ(edit.Text(), "x");
}

TEST(TextEdit, ItsMenuActsOnTheText) {
    Desk<CTextEdit> desk;
    const auto choose = [&desk](const char* item) {
        QContextMenuEvent event(QContextMenuEvent::Keyboard, {}, desk.editor.mapToGlobal(QPoint()));
        QApplication::sendEvent(desk.editor.viewport(), &event);
        auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QStringList enabled;
        QStringList all;
        for (QAction* action : menu->actions()) {
            const QString text = action->text().remove(u'&');
            all << text;
            if (action->isEnabled()) enabled << text;
            if (text == item) QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(action).center());
        }
        menu->close();
        EXPECT_EQ(all.join(u' '), "Undo Cut Copy Paste Select All");
        return enabled.join(u' ');
    };
    QApplication::clipboard()->clear();
    EXPECT_EQ(choose(""), "");
    desk.Press("abc");
    EXPECT_EQ(choose("Select All"), "Undo Select All");
    EXPECT_EQ(choose("Cut"), "Undo Cut Copy Select All");
    EXPECT_EQ(desk.editor.Text(), "");
    EXPECT_EQ(choose("Paste"), "Undo Paste");
    EXPECT_EQ(choose("Undo"), "Undo Paste Select All");
    EXPECT_EQ(desk.editor.Text(), "");
    desk.editor.SetText("read");
    desk.editor.SetReadOnly(true);
    desk.editor.selectAll();
    EXPECT_EQ(choose(""), "Copy Select All");
}

TEST(TextEdit, AMegabyteIsNoWordTooLong) {
    QElapsedTimer timer;
    timer.start();
    Desk<CTextEdit> desk;
    const QString text(1 << 20, u'x');
    desk.editor.SetText(text);
    desk.Press("y");
    EXPECT_EQ(desk.editor.Text(), u'y' + text);
    desk.editor.SetText("next");
    EXPECT_LT(timer.elapsed(), 30'000) << "the toolkit alone takes more than two minutes";
}

TEST(CheckButton, TogglesUnlessReadOnly) {
    Desk<CQLYButton> desk;
    desk.Press(" ");
    EXPECT_TRUE(desk.editor.isChecked());
    QTest::mouseClick(&desk.editor, Qt::LeftButton);
    EXPECT_FALSE(desk.editor.isChecked());
    desk.editor.SetReadOnly(true);
    desk.Press(" ");
    QTest::mouseClick(&desk.editor, Qt::LeftButton);
    EXPECT_FALSE(desk.editor.isChecked());
    EXPECT_TRUE(desk.editor.hasFocus());
    EXPECT_EQ(desk.editor.accessibleDescription(), "read only");
}

TEST(ComboBox, KeepsATextThatIsNoItem) {
    CQLYComboBox list;
    list.SetItems({"red", "Red", "", "green"});
    for (const char* text : {"green", "Red", "blue", "gre", "", "red"}) {
        list.Select(text);
        EXPECT_EQ(list.currentText(), text);
        const int known = list.findText(text, Qt::MatchExactly | Qt::MatchCaseSensitive);
        EXPECT_EQ(list.count(), known == 5 ? 6 : 5) << text << ": an extra entry only for this one";
    }
    EXPECT_EQ(list.itemText(0), "");
}

TEST(ComboBox, KeysAndWheelOnlyWhereTheyBelong) {
    Desk<CQLYComboBox> desk;
    CQLYComboBox& list = desk.editor;
    list.SetItems({"red", "green"});
    desk.Press("g");
    EXPECT_EQ(list.currentText(), "green");
    desk.Press("+");
    EXPECT_EQ(list.currentText(), "red");
    Roll(list);
    EXPECT_EQ(list.currentText(), "green");
    list.SetReadOnly(true);
    desk.Press("+r");
    Roll(list);
    QTest::mouseClick(&list, Qt::LeftButton);
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(list.currentText(), "green");
    list.SetReadOnly(false);
    desk.Leave();
    list.setCurrentIndex(0);
    Roll(list);
    EXPECT_EQ(list.currentIndex(), 0) << "without the focus";
}

TEST(DatePicker, Typing) {
    constexpr DateOrder kMdy = DateOrder::MonthDayYear;
    constexpr DateOrder kDmy = DateOrder::DayMonthYear;
    constexpr DateOrder kYmd = DateOrder::YearMonthDay;
    const struct {
        const char* name;
        DateOrder order;
        std::optional<std::int32_t> before;
        const char* keys;
        const char* after;
    } kCases[] = {
        {"into an empty one", kMdy, {}, "7/4/2004", "07/04/2004"},
        {"without separators", kMdy, {}, "07042004", "07/04/2004"},
        {"in the order of the user", kDmy, {}, "7.4.2004", "07.04.2004"},
        {"year first", kYmd, {}, "2004-4-7", "2004-04-07"},
        {"two digits are this century", kDmy, {}, "7.4.04", "07.04.2004"},
        {"and so are they before a month", kYmd, {}, "04-12-31", "2004-12-31"},
        {"any separator", kDmy, {}, "07/4 2004", "07.04.2004"},
        {"a day that this month lacks", kDmy, kToday, "31.12.2004", "31.12.2004"},
        {"a day that this year lacks", kMdy, kToday, "2/29/2004", "02/29/2004"},
        {"a day that the month lacks", kMdy, kToday, "2/31/2003", "02/28/2003"},
        {"a month that no year has", kMdy, kToday, "13", "01/24/2026"},
        {"early years", kDmy, kToday, "1.2.850", "01.02.0850"},
        {"the last day", kMdy, kToday, "12/31/9999", "12/31/9999"},
        {"only the year", kMdy, kToday, "//1999", "02/24/1999"},
        {"over everything", kMdy, kToday, "<3", "03/24/2026"},
        {"stepping begins today", kMdy, {}, "+", "02/24/2026"},
        {"stepping forgets the typed day", kDmy, kToday, "31.+", "28.03.2026"},
        {"letters", kMdy, kToday, "x", "02/24/2026"},
        {"deleting everything", kMdy, kToday, "<^", "No Date"},
    };
    const FixedClock clock;
    for (const auto& c : kCases) {
        Desk<CDatePicker> desk(c.order, std::cref(clock));
        int changes = 0;
        desk.editor.SetDay(c.before);
        desk.editor.WhenChanged([&changes] { ++changes; });
        auto* shown = desk.editor.findChild<QDateTimeEdit*>();
        shown->setSelectedSection(shown->sectionAt(0));
        desk.Press(c.keys);
        const auto counted = desk.editor.Day();  // half typed, it counts already
        desk.Leave();
        EXPECT_EQ(shown->text(), c.after) << c.name;
        EXPECT_EQ(desk.editor.Day(), counted) << c.name;
        EXPECT_EQ(changes > 0, counted != c.before) << c.name;
    }
}

TEST(DatePicker, EveryYearComesBack) {
    const FixedClock clock;
    CDatePicker picker(DateOrder::MonthDayYear, clock);
    const QDate zero(1904, 1, 1);
    for (int year = 100; year <= 9999; year += 33) {
        for (const QDate date : {QDate(year, 1, 1), QDate(year, 2, 28).addDays(1), QDate(year, 12, 31)}) {
            const auto day = static_cast<std::int32_t>(zero.daysTo(date));
            picker.SetDay(day);
            EXPECT_EQ(picker.Day(), day);
        }
    }
    picker.SetDay(std::nullopt);
    EXPECT_EQ(picker.Day(), std::nullopt);
}

TEST(DatePicker, CalendarCheckBoxAndClipboard) {
    const FixedClock clock;
    Desk<CDatePicker> desk(DateOrder::MonthDayYear, std::cref(clock));
    CDatePicker& picker = desk.editor;
    auto* edit = picker.findChild<QDateTimeEdit*>();
    const auto openCalendar = [edit] {
        QTest::mouseClick(edit, Qt::LeftButton, {}, {edit->width() - 8, edit->height() / 2});
        auto* calendar = edit->calendarWidget();
        EXPECT_TRUE(calendar->isVisible());
        return calendar->findChild<QWidget*>("qt_calendar_calendarview");
    };
    QWidget* days = openCalendar();
    QTest::keyClick(days, Qt::Key_Escape);
    EXPECT_EQ(picker.Day(), std::nullopt);
    days = openCalendar();
    QTest::keyClick(days, Qt::Key_Right);
    EXPECT_EQ(picker.Day(), kToday + 1) << "an empty one begins at today";
    QTest::keyClick(days, Qt::Key_Escape);
    EXPECT_EQ(picker.Day(), std::nullopt);
    days = openCalendar();
    QTest::keyClick(days, Qt::Key_Return);
    EXPECT_EQ(picker.Day(), kToday);

    auto* check = picker.findChild<CQLYButton*>();
    QTest::mouseClick(check, Qt::LeftButton);
    EXPECT_EQ(picker.Day(), std::nullopt);
    QTest::keyClick(check, Qt::Key_Space);
    EXPECT_EQ(picker.Day(), kToday);

    picker.setFocus();
    for (const char* text : {"March 07, 2004", "2004-03-07", " 3/7/2004 "}) {
        picker.SetDay(std::nullopt);
        QApplication::clipboard()->setText(text);
        desk.Press("V");
        EXPECT_EQ(picker.Day(), 36'591) << text;
    }
    QApplication::clipboard()->setText("soon");
    desk.Press("V");
    EXPECT_EQ(picker.Day(), 36'591);

    QTest::keyClick(edit, Qt::Key_Tab);
    EXPECT_FALSE(edit->hasFocus()) << "sections are no places for Tab to stop";
    picker.setFocus();

    picker.SetReadOnly(true);
    QTest::mouseClick(check, Qt::LeftButton);
    desk.Press("+1<^");
    Roll(*edit);
    QTest::mouseClick(edit, Qt::LeftButton, {}, {edit->width() - 8, edit->height() / 2});
    EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
    EXPECT_EQ(picker.Day(), 36'591);
    EXPECT_TRUE(check->isChecked());
    EXPECT_EQ(edit->accessibleDescription(), "read only");
}

TEST(TimePicker, Typing) {
    const struct {
        const char* name;
        std::optional<std::int32_t> before;
        const char* keys;
        const char* after;
    } kCases[] = {
        {"into an empty one", {}, "9:30a", "09:30 am"},  {"without separators", {}, "0930p", "09:30 pm"},
        {"am and pm whole", {}, "12:05 am", "12:05 am"}, {"on a clock of 24 hours", 0, "14:30", "02:30 pm"},
        {"midnight there", kNow, "00:10", "12:10 am"},   {"the half of the day stays", kNow, "12:00", "12:00 pm"},
        {"only the minute", kNow, ":7", "02:07 pm"},     {"letters that mean nothing", kNow, "x", "02:25 pm"},
        {"stepping begins now", {}, "+", "02:25 pm"},    {"deleting everything", kNow, "<^", "No Time"},
    };
    const FixedClock clock;
    for (const auto& c : kCases) {
        Desk<CTimePicker> desk(std::cref(clock));
        desk.editor.SetSeconds(c.before);
        auto* shown = desk.editor.findChild<QDateTimeEdit*>();
        shown->setSelectedSection(shown->sectionAt(0));
        desk.Press(c.keys);
        desk.Leave();
        EXPECT_EQ(shown->text(), c.after) << c.name;
    }
    Desk<CTimePicker> desk(std::cref(clock));
    auto* edit = desk.editor.findChild<QDateTimeEdit*>();
    QTest::mouseClick(edit, Qt::LeftButton, {}, {edit->width() - 8, edit->height() * 3 / 4});
    EXPECT_EQ(desk.editor.Seconds(), kNow / 60 * 60) << "the arrow of an empty one";

    CTimePicker picker(clock);
    for (const auto& [given, held] : {std::pair(0, 0), {59, 0}, {43'230, 43'200}, {86'399, 86'340}, {90'000, 3600}}) {
        picker.SetSeconds(given);
        EXPECT_EQ(picker.Seconds(), held);
    }
}

}  // namespace
}  // namespace quillary
