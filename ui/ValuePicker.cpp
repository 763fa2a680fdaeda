#include "ui/ValuePicker.h"

#include <QAbstractSpinBox>
#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QKeyEvent>
#include <QLineEdit>
#include <QStyleOptionComboBox>
#include <QStylePainter>
#include <QToolTip>
#include <algorithm>

#include "ui/QLYButton.h"
#include "ui/ToolTip.h"

namespace quillary {

namespace {

constexpr int kCheckIdAfterEditor = 300;  // the editors of a form begin at 100, its action buttons at 500
constexpr int kLongestQuoted = 40;        // characters

}  // namespace

// The toolkit's editors of dates correct what is typed into one part to what fits the others; here nothing is read
// before all is typed.
class CValuePicker::LineWithArrows : public QAbstractSpinBox {
  public:
    LineWithArrows(CValuePicker& picker, Arrows arrows) : m_picker(picker), m_dropsDown(arrows == Arrows::DropDown) {
        if (m_dropsDown) setButtonSymbols(NoButtons);
    }

    [[nodiscard]] QLineEdit& Line() const { return *lineEdit(); }
    void stepBy(int steps) override { m_picker.Step(steps); }
    [[nodiscard]] QSize sizeHint() const override { return WithText(QAbstractSpinBox::sizeHint()); }
    [[nodiscard]] QSize minimumSizeHint() const override { return WithText(QAbstractSpinBox::minimumSizeHint()); }

    bool event(QEvent* event) override {
        const bool done = QAbstractSpinBox::event(event);
        if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) PlaceLine();
        return done;
    }

  protected:
    [[nodiscard]] StepEnabled stepEnabled() const override {
        return isReadOnly() ? StepNone : StepUpEnabled | StepDownEnabled;
    }
    void resizeEvent(QResizeEvent* event) override {
        QAbstractSpinBox::resizeEvent(event);
        PlaceLine();
    }
    // Typing then begins anew, however the focus came here.
    void focusInEvent(QFocusEvent* event) override {
        QAbstractSpinBox::focusInEvent(event);
        const Qt::FocusReason reason = event->reason();
        if (reason != Qt::MouseFocusReason && reason != Qt::PopupFocusReason && reason != Qt::ActiveWindowFocusReason) {
            selectAll();
        }
    }
    void mousePressEvent(QMouseEvent* event) override {
        if (!m_dropsDown) return QAbstractSpinBox::mousePressEvent(event);
        if (event->button() == Qt::LeftButton && !isReadOnly()) m_picker.DropDown();
    }
    void paintEvent(QPaintEvent* event) override {
        if (!m_dropsDown) return QAbstractSpinBox::paintEvent(event);
        QStylePainter painter(this);
        painter.drawComplexControl(QStyle::CC_ComboBox, AsComboBox());
    }

  private:
    [[nodiscard]] QStyleOptionComboBox AsComboBox() const {
        QStyleOptionComboBox option;
        option.initFrom(this);
        option.editable = true;
        option.frame = hasFrame();
        option.subControls = QStyle::SC_All;
        if (isReadOnly()) option.state &= ~QStyle::State_Enabled;
        return option;
    }
    void PlaceLine() {
        if (!m_dropsDown) return;
        const QStyleOptionComboBox option = AsComboBox();
        lineEdit()->setGeometry(
            style()->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, this));
    }
    [[nodiscard]] QSize WithText(QSize size) const {
        const QString widest(m_picker.m_parts.size() + (m_dropsDown ? 3 : 1), u'0');  // with the arrow and the caret
        return {size.width() + fontMetrics().horizontalAdvance(widest), size.height()};
    }

    CValuePicker& m_picker;
    const bool m_dropsDown;
};

CValuePicker::CValuePicker(Arrows arrows, const QString& parts, const QString& emptyText, QWidget* parent)
    : QWidget(parent),
      m_parts(parts),
      m_emptyText(emptyText),
      m_editor(new LineWithArrows(*this, arrows)),
      m_check(new CQLYButton) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(2);
    row->addWidget(m_check);
    row->addWidget(m_editor, 1);
    setFocusProxy(m_editor);
    m_check->setFocusPolicy(Qt::ClickFocus);  // one stop for the Tab key; erasing empties the line too

    m_editor->setFocusPolicy(Qt::StrongFocus);  // not by the wheel
    m_editor->installEventFilter(this);
    connect(&m_editor->Line(), &QLineEdit::textChanged, this, [this] { TextChanged(); });
    connect(m_check, &QCheckBox::clicked, this, [this] {
        if (m_check->isChecked() != IsEmpty()) return;  // read only
        SetByUser(IsEmpty() ? Number(Start()) : std::nullopt);
    });
    connect(this, &QObject::objectNameChanged, this, [this](const QString& id) {
        m_editor->setObjectName(id);
        m_editor->Line().setObjectName(id);
        m_check->setObjectName(QString::number(id.toInt() + kCheckIdAfterEditor));
    });
    m_editor->setAccessibleDescription(m_emptyText);
    m_editor->Line().setPlaceholderText(m_emptyText);
}

QAbstractSpinBox& CValuePicker::Editor() const { return *m_editor; }

QString CValuePicker::Text() const { return m_editor->Line().text(); }

bool CValuePicker::IsEmpty() const {
    const QString text = Text().trimmed();
    return text.isEmpty() || text.compare(m_emptyText, Qt::CaseInsensitive) == 0;
}

QString CValuePicker::WhyUnreadable() const {
    const QString text = Text().trimmed();
    return RefusalOf(text.size() > kLongestQuoted ? text.left(kLongestQuoted) + u'\u2026' : text);
}

void CValuePicker::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    m_editor->setReadOnly(readOnly);
    m_check->SetReadOnly(readOnly);
    DescribeState();
}

QColor CValuePicker::Red() const {
    return palette().color(QPalette::Base).lightness() < 128 ? QColor(0xFF, 0x8A, 0x80) : QColor(0xB0, 0x00, 0x20);
}

void CValuePicker::SetValue(Number value) {
    m_last = value;
    m_setting = true;
    m_editor->Line().setText(value ? Write(*value) : QString());
    m_setting = false;
    m_editor->hasFocus() ? m_editor->selectAll() : m_editor->Line().home(false);
}

void CValuePicker::SetByUser(Number value) {
    m_last = value;
    QLineEdit& line = m_editor->Line();
    line.selectAll();
    value ? line.insert(Write(*value)) : line.del();
}

void CValuePicker::CleanUp() {
    const Number value = Value();
    if (value) m_last = value;
    if (value ? Text() != Write(*value) : IsEmpty() && !Text().isEmpty()) SetByUser(value);
}

void CValuePicker::TextChanged() {
    m_check->setChecked(!IsEmpty());
    MarkUnreadable(false);
    if (!m_setting && m_changed) m_changed();
}

void CValuePicker::MarkUnreadable(bool on) {
    if (m_marked != on) {
        QPalette colors;
        if (on) colors.setColor(QPalette::Text, Red());
        m_editor->Line().setPalette(colors);
    }
    m_marked = on;
    DescribeState();
}

// When the focus has arrived, which takes a tooltip away.
void CValuePicker::TellWhy() {
    const auto show = [this] {
        if (m_marked && isVisible()) QToolTip::showText(mapToGlobal(QPoint(width() / 2, 0)), m_editor->toolTip(), this);
    };
    if (m_marked) QMetaObject::invokeMethod(this, show, Qt::QueuedConnection);
}

void CValuePicker::DescribeState() {
    QStringList state;
    if (m_readOnly) state << QStringLiteral("read only");
    if (IsEmpty()) state << m_emptyText;
    const Number value = Value();
    const QString words = value ? InWords(*value) : QString();
    if (!words.isEmpty()) state << words;
    if (m_marked) state << WhyUnreadable();
    m_editor->setToolTip(PlainToolTip(m_marked ? WhyUnreadable() : words));
    m_editor->setAccessibleDescription(state.join(QStringLiteral(", ")));
    m_editor->Line().setPlaceholderText(IsEmpty() ? m_emptyText : QString());  // a screen reader's description, too
}

void CValuePicker::Step(int steps) {
    if (IsEmpty()) return SetByUser(Start());
    const Number value = Value();
    if (!value) {
        QApplication::beep();
        MarkUnreadable(true);
        return TellWhy();
    }
    QLineEdit& line = m_editor->Line();
    const int caret = line.hasSelectedText() ? line.selectionStart() : line.cursorPosition();
    const qsizetype at = std::min<qsizetype>(caret, m_parts.size() - 1);
    const QChar part = m_parts[at].isLetter() ? m_parts[at] : m_parts[at - 1];
    if (const Number stepped = Stepped(*value, part, steps)) SetByUser(stepped);
    line.setSelection(static_cast<int>(m_parts.indexOf(part)), static_cast<int>(m_parts.count(part)));
}

bool CValuePicker::TakesKey(const QKeyEvent& event) {
    if (event.matches(QKeySequence::Paste)) return TakesPasted(QApplication::clipboard()->text());
    switch (event.key()) {
        case Qt::Key_F4:
            if (event.modifiers() != Qt::NoModifier) return false;
            DropDown();
            return true;
        case Qt::Key_Up:
        case Qt::Key_Down:
            if (event.modifiers() & Qt::AltModifier) {
                DropDown();
                return true;
            }
            [[fallthrough]];
        case Qt::Key_PageUp:
        case Qt::Key_PageDown:
            return IsEmpty();  // nothing to step
        default:
            return false;
    }
}

// One whole value takes the place of all; anything else goes where the caret is, as if it were typed.
bool CValuePicker::TakesPasted(const QString& pasted) {
    const Number value = ReadPasted(pasted);
    if (value) SetByUser(value);
    return value.has_value();
}

bool CValuePicker::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_editor) return QWidget::eventFilter(watched, event);
    switch (event->type()) {
        case QEvent::KeyPress:
            return !m_readOnly && TakesKey(static_cast<const QKeyEvent&>(*event));
        case QEvent::FocusOut: {
            // Another window, a menu or the page that goes does not end the typing.
            const Qt::FocusReason reason = static_cast<const QFocusEvent*>(event)->reason();
            const bool isLeft = reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason ||
                                reason == Qt::MouseFocusReason || reason == Qt::ShortcutFocusReason;
            if (!isLeft || m_readOnly) return false;
            CleanUp();
            MarkUnreadable(IsUnreadable());
            if (reason != Qt::MouseFocusReason) TellWhy();
            return false;
        }
        case QEvent::Wheel:
            if (m_editor->hasFocus() && !IsEmpty() && !m_readOnly) return false;
            event->ignore();  // the form scrolls
            return true;
        default:
            return false;
    }
}

bool CValuePicker::event(QEvent* event) {
    if (event->type() == QEvent::Polish) {
        m_editor->setAccessibleName(accessibleName());
        m_check->setAccessibleName(QStringLiteral("%1: not empty").arg(accessibleName()));
    }
    return QWidget::event(event);
}

}  // namespace quillary
