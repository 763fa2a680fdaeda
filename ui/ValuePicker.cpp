#include "ui/ValuePicker.h"

#include <QApplication>
#include <QBoxLayout>
#include <QClipboard>
#include <QDateTimeEdit>
#include <QKeyEvent>
#include <QLineEdit>
#include <algorithm>
#include <utility>

#include "ui/QLYButton.h"
#include "ui/ReadOnly.h"

namespace quillary {

namespace {

constexpr int kCheckIdAfterEditor = 300;  // the editors of a form begin at 100, its action buttons at 500

}  // namespace

// Reads with our rule what the toolkit would correct to something else: "4/7/26" is in this century.
class CValuePicker::SectionEdit : public QDateTimeEdit {
  public:
    explicit SectionEdit(CValuePicker& picker) : m_picker(picker) {}

    void stepBy(int steps) override {
        m_picker.TypingEnded();
        if (m_picker.m_empty) {
            m_picker.SetByUser(m_picker.Start());
        } else {
            QDateTimeEdit::stepBy(steps);
        }
    }

    [[nodiscard]] bool IsHalfTyped() const { return text() != textFromDateTime(dateTime()); }
    [[nodiscard]] bool IsAllSelected() const { return lineEdit()->selectedText() == text(); }
    [[nodiscard]] bool HasSelection() const { return lineEdit()->hasSelectedText(); }

  protected:
    [[nodiscard]] StepEnabled stepEnabled() const override {
        const bool begins = m_picker.m_empty && !isReadOnly();
        return begins ? StepUpEnabled | StepDownEnabled : QDateTimeEdit::stepEnabled();
    }
    void fixup(QString& text) const override { text = textFromDateTime(m_picker.Read(text).value_or(dateTime())); }

    /// Tab leaves it; the arrow keys and the separators go through its sections.
    bool focusNextPrevChild(bool next) override {
        return QWidget::focusNextPrevChild(next);  // NOLINT(bugprone-parent-virtual-call): the toolkit's stays inside
    }

  private:
    CValuePicker& m_picker;
};

CValuePicker::CValuePicker(const QString& format, const QString& emptyText, QWidget* parent)
    : QWidget(parent), m_editor(new SectionEdit(*this)), m_check(new CQLYButton), m_emptyText(emptyText) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins({});
    row->setSpacing(2);
    row->addWidget(m_check);
    row->addWidget(m_editor, 1);
    setFocusProxy(m_editor);
    m_check->setFocusPolicy(Qt::ClickFocus);  // one stop for the Tab key; erasing empties the editor too

    // UTC has no missing hours. The C locale writes am and pm as the record list does.
    m_editor->setTimeSpec(Qt::UTC);
    m_editor->setLocale(QLocale::c());
    m_editor->setDisplayFormat(format);
    m_editor->setCorrectionMode(QAbstractSpinBox::CorrectToNearestValue);
    m_editor->setFocusPolicy(Qt::StrongFocus);  // not by the wheel
    m_editor->installEventFilter(this);
    connect(m_editor, &QDateTimeEdit::dateTimeChanged, this, [this] { EditorChanged(); });
    connect(m_check, &QCheckBox::clicked, this, [this] {
        if (m_check->isChecked() != m_empty) return;
        TypingEnded();
        SetByUser(m_empty ? std::optional(Start()) : std::nullopt);
    });
    connect(this, &QObject::objectNameChanged, this, [this](const QString& id) {
        m_editor->setObjectName(id);
        m_check->setObjectName(QString::number(id.toInt() + kCheckIdAfterEditor));
    });
}

QDateTimeEdit& CValuePicker::Editor() const { return *m_editor; }

void CValuePicker::SetReadOnly(bool readOnly) {
    m_readOnly = readOnly;
    m_editor->setReadOnly(readOnly);
    m_check->SetReadOnly(readOnly);
    TellReadOnly(*m_editor, readOnly);
}

std::optional<QDateTime> CValuePicker::Value() const {
    if (m_empty) return std::nullopt;
    m_editor->interpretText();
    return m_editor->dateTime();
}

// Empty, it stands at the minimum, for which the toolkit then shows another text.
void CValuePicker::SetValue(const std::optional<QDateTime>& value) {
    m_setting = true;
    m_empty = !value;
    m_check->setChecked(!m_empty);
    m_editor->setSpecialValueText(m_empty ? m_emptyText : QString());
    m_editor->setDateTime(value.value_or(m_editor->minimumDateTime()));
    m_setting = false;
}

void CValuePicker::SetByUser(const std::optional<QDateTime>& value) {
    SetValue(value);
    if (m_changed) m_changed();
}

void CValuePicker::EditorChanged() {
    if (m_setting) return;
    const QDateTime now = m_editor->dateTime();
    const QDateTime wanted = m_editor->IsHalfTyped() ? now : Completed(now);
    if (m_empty || wanted != now) {
        SetByUser(wanted);
    } else if (m_changed) {
        m_changed();
    }
}

bool CValuePicker::TakesKey(QKeyEvent& event) {
    if (event.matches(QKeySequence::Paste)) {
        TypingEnded();
        if (const auto read = Read(QApplication::clipboard()->text())) {
            SetByUser(read);
        } else {
            QApplication::beep();
        }
        return true;
    }
    const bool erases = event.key() == Qt::Key_Delete || event.key() == Qt::Key_Backspace;
    if (erases && !m_empty && m_editor->IsAllSelected()) {
        TypingEnded();
        SetByUser(std::nullopt);
        return true;
    }
    if (event.text().isEmpty() && event.key() >= Qt::Key_Shift && event.key() <= Qt::Key_CapsLock) return false;
    constexpr auto kCommand = Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const QChar typed = event.text().isEmpty() || event.modifiers() & kCommand ? QChar() : event.text().front();
    if (m_empty) {
        if (!typed.isLetterOrNumber()) return false;
        TypingEnded();
        SetByUser(Start());
        SelectSection(0);
    }
    if (typed.isLetterOrNumber()) return TakesTyped(typed);
    const int left = std::exchange(m_section, -1);
    if (typed.isPrint()) {
        // One of several separators after a section that was left already is no second step.
        if (m_editor->IsHalfTyped()) m_editor->interpretText();
        SelectSection((left < 0 ? m_editor->currentSectionIndex() : left) + 1);
        return true;
    }
    return false;
}

bool CValuePicker::TakesTyped(QChar typed) {
    if (typed.isLetter()) {
        const auto value = WithLetter(typed);
        if (!value) {
            QApplication::beep();
            return true;
        }
        const int section = m_editor->currentSectionIndex();
        SetByUser(value);
        SelectSection(section);
        return true;
    }
    if (m_editor->IsAllSelected()) {
        SelectSection(0);
        m_section = -1;
    }
    const int section = m_editor->currentSectionIndex();
    const int most = MostTyped(m_editor->sectionAt(section));
    if (most == 0) {
        // The toolkit refuses a digit in a full section.
        if (!m_editor->IsHalfTyped() && !m_editor->HasSelection()) SelectSection(section);
        m_section = section;
        return false;
    }
    if (m_editor->IsHalfTyped()) m_editor->interpretText();
    const bool goesOn = section == m_section && m_digits == 1;
    const int number = (goesOn ? m_number * 10 : 0) + typed.digitValue();
    if (typed.digitValue() < 0 || number > most) {
        QApplication::beep();
        return true;
    }
    m_section = section;
    m_number = number;
    m_digits = goesOn ? 2 : 1;
    if (const auto value = WithTyped(m_editor->sectionAt(section), number, m_digits)) SetByUser(value);
    SelectSection(m_digits == 2 || number * 10 > most ? section + 1 : section);
    return true;
}

void CValuePicker::SelectSection(int index) {
    m_editor->setSelectedSection(m_editor->sectionAt(std::min(index, m_editor->sectionCount() - 1)));
}

bool CValuePicker::eventFilter(QObject* watched, QEvent* event) {
    if (watched != m_editor || m_readOnly) return QWidget::eventFilter(watched, event);
    switch (event->type()) {
        case QEvent::KeyPress:
            return TakesKey(static_cast<QKeyEvent&>(*event));
        case QEvent::FocusOut:
            m_editor->interpretText();
            TypingEnded();
            return false;
        case QEvent::MouseButtonPress:
            TypingEnded();
            return false;
        case QEvent::Wheel:
            TypingEnded();
            if (m_editor->hasFocus() && !m_empty) return false;
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
