#include "views/EditRecordForm.h"

#include <QApplication>
#include <QKeyEvent>
#include <QLineEdit>
#include <QScrollBar>
#include <QToolButton>
#include <QToolTip>
#include <algorithm>

#include "db/RecordCommit.h"
#include "ui/Icon.h"
#include "ui/ToolTip.h"
#include "ui/TypedText.h"
#include "ui/UserMessages.h"
#include "ui/WideText.h"
#include "views/FieldLabel.h"
#include "views/RecordEditor.h"

namespace quillary {

namespace {

bool IsDark(const QPalette& palette) { return palette.color(QPalette::Window).lightness() < 128; }

QColor ViewOnlyColor(const QPalette& palette) {
    return IsDark(palette) ? QColor(0x45, 0x48, 0x4C) : QColor(0xC0, 0xC0, 0xC0);
}

/// On the colour above.
QColor LinkColor(const QPalette& palette) {
    return IsDark(palette) ? QColor(0x93, 0xC5, 0xFD) : QColor(0x00, 0x00, 0xCC);
}

struct Action {
    const char* icon;
    const char* name;  // %1: the field
    const char* toolTip;
};

std::optional<Action> ActionOf(FieldType type, bool canDial) {
    switch (type) {
        case FieldType::Phone:
            return canDial ? std::optional(Action{"phone", "Dial %1", "Dial"}) : std::nullopt;
        case FieldType::EMail:
            return Action{"mail", "Write a mail to %1", "Write a Mail"};
        case FieldType::WebUrl:
            return Action{"web", "Open %1", "Open in the Browser"};
        default:
            return std::nullopt;
    }
}

// The controls in which a person types.
bool IsTextLike(FieldType type) {
    switch (type) {
        case FieldType::Checkbox:
        case FieldType::Date:
        case FieldType::Time:
        case FieldType::List:
            return false;
        default:
            return true;
    }
}

}  // namespace

CEditRecordForm::CEditRecordForm(CQuillaryDoc& doc, const Clock& clock, DateOrder order, bool canDial)
    : m_doc(doc), m_clock(clock), m_viewOnly(!doc.EditOnSelect() || doc.IsReadOnly()) {
    setObjectName(QStringLiteral("1049"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    verticalScrollBar()->setSingleStep(kFormRowStep);
    auto* page = new QWidget;
    page->setObjectName(QStringLiteral("188"));
    setWidget(page);
    page->setAutoFillBackground(false);
    viewport()->setAutoFillBackground(false);
    for (std::size_t field = 0; field < doc.FieldCount(); ++field) AddRow(field, clock, order, canDial);
    SetViewOnly(m_viewOnly);
}

CEditRecordForm::~CEditRecordForm() = default;

void CEditRecordForm::AddRow(std::size_t field, const Clock& clock, DateOrder order, bool canDial) {
    auto editor = MakeRecordEditor(m_doc, field, clock, order, *widget());
    const QString name = OnOneLine(FromWide(m_doc.FieldName(field)));
    QWidget& control = editor->Widget();
    control.setObjectName(QString::number(kFirstEditor + static_cast<int>(field)));
    control.setAccessibleName(name);
    control.installEventFilter(this);
    for (QWidget* part : control.findChildren<QWidget*>()) {
        if (!qobject_cast<QScrollBar*>(part)) part->installEventFilter(this);
    }
    if (!m_rows.empty()) {
        const RecordFormRow& last = m_rows.back();
        setTabOrder(last.action ? last.action : &last.editor->Widget(), &control);
    }
    const FieldType type = m_doc.TypeOf(field);
    editor->WhenFollowed([this, type, &followed = *editor] { onAction(type, followed.Text()); });
    QToolButton* action = MakeAction(*editor, name, canDial);
    m_rows.push_back({type, std::move(editor), new CFieldLabel(name, control, widget()), action});
}

QToolButton* CEditRecordForm::MakeAction(const CRecordEditor& editor, const QString& fieldName, bool canDial) {
    const FieldType type = m_doc.TypeOf(editor.Field());
    const auto action = ActionOf(type, canDial);
    if (!action) return nullptr;
    auto* button = new QToolButton(widget());
    button->setObjectName(QString::number(m_nextAction++));
    button->setIcon(Icon(action->icon));
    button->setAccessibleName(QString::fromLatin1(action->name).arg(fieldName));
    SetPlainToolTip(*button, QString::fromLatin1(action->toolTip));
    button->setFocusPolicy(Qt::TabFocus);
    button->installEventFilter(this);
    setTabOrder(&editor.Widget(), button);
    connect(button, &QToolButton::clicked, this, [this, type, &editor] { onAction(type, editor.Text()); });
    return button;
}

// ---- The record

void CEditRecordForm::ShowRecord() {
    m_isNew = false;
    const RecordRef& record = m_doc.Shown()[m_doc.CurrentRecord()];
    EntryTable entries;
    entries.Fill(record.Entries(), m_doc.FieldCount());
    for (const RecordFormRow& row : m_rows) {
        const std::size_t field = row.editor->Field();
        row.editor->Load(entries.Has(field) ? std::optional(entries.Text(field)) : std::nullopt);
    }
    FocusFirst();
}

void CEditRecordForm::FollowRecord() {
    EntryTable entries;
    entries.Fill(m_doc.Shown()[m_doc.CurrentRecord()].Entries(), m_doc.FieldCount());
    for (const RecordFormRow& row : m_rows) {
        const std::size_t field = row.editor->Field();
        if (row.editor->IsChanged())
            row.editor->Follow(entries.Has(field) ? std::optional(entries.Text(field)) : std::nullopt);
    }
}

void CEditRecordForm::ShowNewRecord() {
    m_isNew = true;
    if (m_viewOnly) SetViewOnly(false);
    m_newValues = NewRecordValues(m_doc, m_clock);
    for (const RecordFormRow& row : m_rows) row.editor->Load(m_newValues[row.editor->Field()]);
    FocusFirst();
}

bool CEditRecordForm::IsChanged() const {
    return std::any_of(m_rows.begin(), m_rows.end(), [](const RecordFormRow& row) { return row.editor->IsChanged(); });
}

QString CEditRecordForm::TextOf(std::size_t field) const { return m_rows[field].editor->Text(); }

bool CEditRecordForm::Commit(bool& changed, Failure& failure, int& control) {
    changed = false;
    control = 0;
    if (!m_isNew) return CommitChanges(changed, failure, control);
    if (!CommitNew(failure, control)) return false;
    m_isNew = false;
    changed = true;
    return true;
}

bool CEditRecordForm::CommitNew(Failure& failure, int& control) {
    std::vector<std::string> values = m_newValues;
    for (const RecordFormRow& row : m_rows) {
        if (!row.editor->IsChanged()) continue;
        const std::size_t field = row.editor->Field();
        auto stored = row.editor->Stored(failure);
        if (!stored || !CheckHidesNothing(m_doc, field, *stored, failure)) {
            control = kFirstEditor + static_cast<int>(field);
            return false;
        }
        values[field] = std::move(*stored);
    }
    return CommitNewRecord(m_doc, values, failure);
}

bool CEditRecordForm::CommitChanges(bool& changed, Failure& failure, int& control) {
    std::vector<EnteredValue> values;
    for (const RecordFormRow& row : m_rows) {
        if (!row.editor->IsChanged()) continue;
        const std::size_t field = row.editor->Field();
        auto stored = row.editor->Stored(failure);
        if (!stored) {
            control = kFirstEditor + static_cast<int>(field);
            return false;
        }
        values.push_back({field, std::move(*stored)});
    }
    if (CommitRecord(m_doc, m_doc.CurrentRecord(), values, changed, failure)) return true;
    Failure ofOneField;
    for (const EnteredValue& value : values) {
        if (CheckHidesNothing(m_doc, value.field, value.stored, ofOneField)) continue;
        control = kFirstEditor + static_cast<int>(value.field);
        break;
    }
    return false;
}

// ---- Layout

void CEditRecordForm::LayOut() {
    const int height = LayOutRows(m_rows, width(), verticalScrollBar()->sizeHint().width(), fontMetrics());
    widget()->resize(viewport()->width(), height);
}

void CEditRecordForm::resizeEvent(QResizeEvent* event) {
    QScrollArea::resizeEvent(event);
    LayOut();
}

void CEditRecordForm::changeEvent(QEvent* event) {
    QScrollArea::changeEvent(event);
    if (event->type() == QEvent::FontChange || event->type() == QEvent::StyleChange) LayOut();
    if (event->type() == QEvent::PaletteChange) PaintEditors();
}

// ---- Viewing and editing

void CEditRecordForm::SetViewOnly(bool viewOnly) {
    m_viewOnly = viewOnly;
    for (const RecordFormRow& row : m_rows) row.editor->SetReadOnly(viewOnly);
    PaintEditors();
}

void CEditRecordForm::PaintEditors() {
    QPalette colors;  // sets nothing, so that all come from the program's palette
    if (m_viewOnly) {
        colors.setColor(QPalette::Base, ViewOnlyColor(palette()));
        colors.setColor(QPalette::Button, ViewOnlyColor(palette()));
    }
    QPalette linkColors = colors;
    if (m_viewOnly) linkColors.setColor(QPalette::Text, LinkColor(palette()));
    for (const RecordFormRow& row : m_rows) {
        const bool isLink = row.type == FieldType::EMail || row.type == FieldType::WebUrl;
        row.editor->Widget().setPalette(isLink ? linkColors : colors);
    }
}

void CEditRecordForm::BeginEditing() {
    if (!m_viewOnly) return;
    if (m_doc.IsReadOnly()) {
        QWidget* at = QApplication::focusWidget();
        const QPoint below(0, at ? at->height() : 0);
        if (at) QToolTip::showText(at->mapToGlobal(below), PlainToolTip(FromUtf8(MessageText(Message::ReadOnly))), at);
        return;
    }
    SetViewOnly(false);
    if (onEditing) onEditing();
}

bool CEditRecordForm::event(QEvent* event) {
    switch (static_cast<int>(event->type())) {
        case kEditMessage:
            BeginEditing();
            return true;
        case kNextMessage:
            Step(1);
            return true;
        case kPreviousMessage:
            Step(-1);
            return true;
        case kMakeVisibleMessage:
            MakeVisible();
            return true;
        case kRaisePanelMessage:
            if (!m_rows.empty() && IsTextLike(m_rows.front().type) && !m_viewOnly && onTypingBegins) onTypingBegins();
            return true;
        default:
            return QScrollArea::event(event);
    }
}

void CEditRecordForm::Step(int direction) {
    if (m_viewOnly) {
        verticalScrollBar()->triggerAction(direction > 0 ? QScrollBar::SliderSingleStepAdd
                                                         : QScrollBar::SliderSingleStepSub);
        return;
    }
    const int next = FocusedRow() + direction;
    if (next < 0 || next >= static_cast<int>(m_rows.size())) return;
    m_rows[static_cast<std::size_t>(next)].editor->Widget().setFocus(direction > 0 ? Qt::TabFocusReason
                                                                                   : Qt::BacktabFocusReason);
}

int CEditRecordForm::FocusedRow() const {
    const RecordFormRow* row = RowOf(QApplication::focusWidget());
    return row ? static_cast<int>(row - m_rows.data()) : -1;
}

const RecordFormRow* CEditRecordForm::RowOf(const QObject* widget) const {
    for (; widget && widget != this; widget = widget->parent()) {
        const auto found = std::find_if(m_rows.begin(), m_rows.end(), [widget](const RecordFormRow& row) {
            return &row.editor->Widget() == widget || row.action == widget;
        });
        if (found != m_rows.end()) return &*found;
    }
    return nullptr;
}

void CEditRecordForm::MakeVisible() {
    const int row = FocusedRow();
    if (row < 0) return;
    // The top last, for an editor that is higher than the form.
    const QRect place = m_rows[static_cast<std::size_t>(row)].editor->Widget().geometry();
    ensureVisible(place.left(), place.bottom(), 0, kFormTop);
    ensureVisible(place.left(), place.top(), 0, kFormTop);
}

void CEditRecordForm::FocusFirst() {
    if (m_rows.empty()) return;
    m_rows.front().editor->Widget().setFocus();
    verticalScrollBar()->setValue(0);
}

bool CEditRecordForm::eventFilter(QObject* watched, QEvent* event) {
    const RecordFormRow* row = RowOf(watched);
    if (!row) return QScrollArea::eventFilter(watched, event);
    if (watched == row->action) return ActionTakes(*event);
    if (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::MouseButtonRelease) {
        const auto& mouse = static_cast<const QMouseEvent&>(*event);
        if (mouse.button() == Qt::LeftButton && row->editor->IsLinkAt(mouse.position().toPoint())) return false;
    }
    const bool placesCaret = row->editor->HasCaret() || qobject_cast<QLineEdit*>(watched);  // that of a picker
    switch (event->type()) {
        case QEvent::FocusIn: {
            QEvent message(kMakeVisibleMessage);
            QApplication::sendEvent(this, &message);
            return false;
        }
        case QEvent::MouseButtonPress: {
            if (!m_viewOnly || static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return false;
            row->editor->Widget().setFocus(Qt::MouseFocusReason);
            if (m_doc.IsReadOnly()) return !placesCaret;
            QEvent message(kEditMessage);
            QApplication::sendEvent(this, &message);
            return !placesCaret;  // beginning to edit changes no value
        }
        case QEvent::MouseButtonRelease:
            // Only now, as a release takes a tooltip away.
            if (!m_doc.IsReadOnly() || static_cast<QMouseEvent*>(event)->button() != Qt::LeftButton) return false;
            BeginEditing();
            return !placesCaret;  // the widget has not seen the press either
        case QEvent::KeyPress:
            return TakesKey(*row->editor, static_cast<QKeyEvent&>(*event));
        default:
            return false;
    }
}

bool CEditRecordForm::ActionTakes(const QEvent& event) {
    if (event.type() == QEvent::FocusIn) {
        QEvent message(kMakeVisibleMessage);
        QApplication::sendEvent(this, &message);
    }
    if (event.type() != QEvent::KeyPress) return false;
    const auto& key = static_cast<const QKeyEvent&>(event);
    const bool isUpOrDown = key.key() == Qt::Key_Up || key.key() == Qt::Key_Down;
    if (!isUpOrDown || (key.modifiers() & ~Qt::KeypadModifier) != Qt::NoModifier) return false;
    QEvent message(key.key() == Qt::Key_Down ? kNextMessage : kPreviousMessage);
    QApplication::sendEvent(this, &message);
    return true;
}

bool CEditRecordForm::TakesKey(const CRecordEditor& editor, const QKeyEvent& event) {
    const Qt::KeyboardModifiers modifiers = event.modifiers() & ~Qt::KeypadModifier;
    const int key = event.key();
    if (key == Qt::Key_Up || key == Qt::Key_Down) {
        const bool viewsPicker = m_viewOnly && !editor.HasCaret();
        if (modifiers != Qt::NoModifier || !(viewsPicker || editor.IsLeftBy(key))) return false;
        QEvent message(key == Qt::Key_Down ? kNextMessage : kPreviousMessage);
        QApplication::sendEvent(this, &message);
        return true;
    }
    if (!m_viewOnly) return false;
    const bool isCharacter =
        IsWriting(event.text()) && !(modifiers & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (!isCharacter && key != Qt::Key_F2) return false;
    QEvent message(kEditMessage);
    QApplication::sendEvent(this, &message);
    // The character goes to the editor, but for the one that would toggle a check box.
    return key == Qt::Key_F2 || m_doc.TypeOf(editor.Field()) == FieldType::Checkbox;
}

}  // namespace quillary
