// The editors of single values, used by real keys, clicks and the clipboard.
#include <gtest/gtest.h>

#include <QAbstractSpinBox>
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

#include "db/FieldValue.h"
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

/// What the line holds after the keys, which are pressed as the focus arrives, and once Tab has left it.
struct TypedCase {
    const char* name;
    std::optional<std::int32_t> before;
    const char* keys;
    const char* left;
    std::optional<std::int32_t> after;
    bool isRefused = false;
};

template <class Picker>
void TypeInto(Desk<Picker>& desk, const TypedCase& c, std::optional<std::int32_t> (Picker::*value)() const) {
    int changes = 0;
    desk.editor.WhenChanged([&changes] { ++changes; });
    auto* line = desk.editor.template findChild<QLineEdit*>();
    desk.Press(c.keys);
    EXPECT_EQ((desk.editor.*value)(), c.after) << c.name << ": it counts before it is left";
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_FALSE(desk.editor.focusWidget()->hasFocus()) << "its parts are no places for Tab to stop";
    EXPECT_EQ(line->text(), c.left) << c.name;
    EXPECT_EQ((desk.editor.*value)(), c.after) << c.name;
    EXPECT_EQ(desk.editor.IsUnreadable(), c.isRefused) << c.name;
    EXPECT_EQ(desk.editor.template findChild<QAbstractSpinBox*>()->toolTip().contains(" is no "), c.isRefused)
        << c.name;
    EXPECT_EQ(changes > 0, c.isRefused || c.after != c.before) << c.name;
    EXPECT_EQ(desk.editor.template findChild<CQLYButton*>()->isChecked(), c.isRefused || c.after) << c.name;
}

TEST(DatePicker, Typing) {
    constexpr DateOrder kMdy = DateOrder::MonthDayYear;
    constexpr DateOrder kDmy = DateOrder::DayMonthYear;
    constexpr DateOrder kYmd = DateOrder::YearMonthDay;
    constexpr std::int32_t k7March = 36591;  // 2004
    const struct {
        DateOrder order;
        TypedCase typed;
    } kCases[] = {
        {kMdy, {"into an empty one", {}, "3/7/2004", "03/07/2004", k7March}},
        {kDmy, {"in the order of the user", {}, "7.3.2004", "07.03.2004", k7March}},
        {kYmd, {"year first", kToday, "2004-3-7", "2004-03-07", k7March}},
        {kMdy, {"ISO in any order", kToday, "2004-03-07", "03/07/2004", k7March}},
        {kDmy, {"the month by its name", kToday, "march 7, 2004", "07.03.2004", k7March}},
        {kDmy, {"two digits are this century", kToday, "7/3/04", "07.03.2004", k7March}},
        {kMdy, {"early years", {}, "1/2/0850", "01/02/0850", -384963}},
        {kMdy, {"a year that lacks a digit", kToday, "04/03/202", "04/03/202", {}, true}},
        {kDmy, {"or three", kToday, "1.1.2", "1.1.2", {}, true}},
        {kMdy, {"another order", kToday, "31.12.2004", "31.12.2004", {}, true}},
        {kMdy, {"a month that no year has", kToday, "13/1/2004", "13/1/2004", {}, true}},
        {kMdy, {"a day that the month lacks", kToday, "2/30/2004", "2/30/2004", {}, true}},
        {kMdy, {"half of one", kToday, "3/7", "3/7", {}, true}},
        {kMdy, {"a text", {}, "soon", "soon", {}, true}},
        {kMdy, {"the word for none", kToday, "no date", "", {}}},
        {kMdy, {"deleting everything", kToday, "^", "", {}}},
        {kMdy, {"the first part is stepped", kToday, "+", "03/24/2026", kToday + 28}},
        {kDmy, {"and goes on beyond its end", kToday, "+++++", "01.03.2026", kToday + 5}},
        {kMdy, {"nothing to step", {}, "+", "", {}}},
        {kMdy, {"nor in what cannot be read", {}, "3/7+", "3/7", {}, true}},
    };
    const FixedClock clock;
    for (const auto& c : kCases) {
        Desk<CDatePicker> desk(c.order, std::cref(clock));
        desk.editor.SetDay(c.typed.before);
        TypeInto(desk, c.typed, &CDatePicker::Day);
        const QString described = desk.editor.findChild<QAbstractSpinBox*>()->accessibleDescription();
        EXPECT_EQ(described == "March 07, 2004", c.order != kMdy && c.typed.after == k7March) << c.typed.name;
    }
}

TEST(DatePicker, WhatIsTypedStaysUntilItIsLeftAndUndoTakesItBack) {
    const FixedClock clock;
    Desk<CDatePicker> desk(DateOrder::MonthDayYear, std::cref(clock));
    desk.editor.SetDay(kToday);
    auto* line = desk.editor.findChild<QLineEdit*>();
    desk.Press("<2004-3-7");
    desk.Leave();  // by the program, as another page does
    EXPECT_EQ(line->text(), "2004-3-7");
    desk.editor.setFocus();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    desk.editor.setFocus();
    for (const char* text : {"2004-3-7", "02/24/2026"}) {
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Z, Qt::ControlModifier);
        EXPECT_EQ(line->text(), text);
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
    auto* edit = picker.findChild<QAbstractSpinBox*>();
    const struct {
        const char* name;
        int opens;  // 0: a click on the arrow
        Qt::KeyboardModifier modifier;
        std::vector<Qt::Key> keys;
        std::optional<std::int32_t> after;
        const char* typed = "";
    } kOpenings[] = {
        {"left at once", 0, Qt::NoModifier, {Qt::Key_Escape}, {}},
        {"left after a step", Qt::Key_F4, Qt::NoModifier, {Qt::Key_Right, Qt::Key_Escape}, {}},
        {"an empty one begins at today", Qt::Key_Down, Qt::AltModifier, {Qt::Key_Right, Qt::Key_Return}, kToday + 1},
        {"then at its day", 0, Qt::NoModifier, {Qt::Key_Left, Qt::Key_Return}, kToday},
        {"of its year", Qt::Key_F4, Qt::NoModifier, {Qt::Key_Return}, DateToDay({2026, 4, 3}), "<4/3/202"},
        {"of its day", Qt::Key_F4, Qt::NoModifier, {Qt::Key_Return}, DateToDay({2004, 5, 3}), "<2004-5"},
        {"a name", Qt::Key_F4, Qt::NoModifier, {Qt::Key_Return}, DateToDay({2004, 3, 9}), "<march 9"},
        {"else where it was", Qt::Key_F4, Qt::NoModifier, {Qt::Key_Return}, DateToDay({2004, 3, 9}), "<31.12"},
    };
    for (const auto& c : kOpenings) {
        desk.Press(c.typed);
        if (c.opens == 0) {
            QTest::mouseClick(edit, Qt::LeftButton, {}, {edit->width() - 8, edit->height() / 2});
        } else {
            QTest::keyClick(edit, static_cast<Qt::Key>(c.opens), c.modifier);
        }
        auto* calendar = picker.findChild<QCalendarWidget*>();
        ASSERT_TRUE(calendar && calendar->isVisible()) << c.name;
        for (const Qt::Key key : c.keys)
            QTest::keyClick(calendar->findChild<QWidget*>("qt_calendar_calendarview"), key);
        EXPECT_FALSE(calendar->isVisible()) << c.name;
        EXPECT_EQ(picker.Day(), c.after) << c.name;
    }

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
    QApplication::clipboard()->setText("01/02/850");
    desk.Press("<V");
    EXPECT_EQ(picker.Text(), "01/02/0850") << "as the list shows it";
    QApplication::clipboard()->setText("soon");
    desk.Press("<V");
    EXPECT_TRUE(picker.IsUnreadable() && picker.Text() == QStringLiteral("soon")) << "as if it were typed";
    Roll(*edit);
    EXPECT_FALSE(edit->toolTip().isEmpty()) << "why nothing is stepped";
    picker.SetDay(36'591);
    desk.Leave();
    Roll(*edit);
    EXPECT_EQ(picker.Day(), 36'591) << "without the focus";
    picker.setFocus();
    Roll(*edit);
    EXPECT_EQ(picker.Day(), 36'591 - 29) << "a month back";
    picker.SetDay(36'591);

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
    const TypedCase kCases[] = {
        {"into an empty one", {}, "9:05", "09:05 am", 32'700},
        {"midnight", kNow, "0:30", "12:30 am", 1800},
        {"am and pm", 0, "2:30 PM", "02:30 pm", 52'200},
        {"seconds", kNow, "23:59:59", "11:59 pm", 86'340},
        {"no colon", 0, "230p", "230p", {}, true},
        {"an hour that no day has", 0, "24:00", "24:00", {}, true},
        {"deleting everything", 0, "^", "", {}},
        {"the hour is stepped", 39'600, "+", "12:00 pm", 43'200},
        {"but not out of the day", 82'800, "+", "11:00 pm", 82'800},
        {"nothing to step", {}, "+", "", {}},
    };
    const FixedClock clock;
    for (const TypedCase& c : kCases) {
        Desk<CTimePicker> desk(std::cref(clock));
        desk.editor.SetSeconds(c.before);
        TypeInto(desk, c, &CTimePicker::Seconds);
    }
    Desk<CTimePicker> desk(std::cref(clock));
    auto* edit = desk.editor.findChild<QAbstractSpinBox*>();
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
