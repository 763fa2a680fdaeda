#include "views/EditRecordDlg.h"

#include <QApplication>
#include <QKeyEvent>
#include <QToolBar>

#include "admin/Settings.h"
#include "db/UserLocale.h"
#include "integration/DialNumberDlg.h"
#include "integration/Dialing.h"
#include "ui/Accelerators.h"
#include "ui/CommandIds.h"
#include "ui/FrameWindow.h"
#include "ui/HelpTopics.h"
#include "ui/MessageBox.h"
#include "ui/ToolBars.h"
#include "ui/UserMessages.h"
#include "ui/WideText.h"
#include "views/DocumentSession.h"
#include "views/EditRecordForm.h"
#include "views/Exports.h"
#include "views/LinkOpening.h"

namespace quillary {

namespace {

constexpr DialogInfo kDialog{173, u"Edit Record", {}, kTopicEditRecord};

}  // namespace

std::span<const CommandEntry<CEditRecordDlg>> CEditRecordDlg::Commands() {
    using Dlg = CEditRecordDlg;
    static constexpr CommandEntry<Dlg> kCommands[] = {
        {ID_FORM_NEW, &Dlg::OnNew, &Dlg::Update<ID_FORM_NEW>},
        {ID_FORM_DUPLICATE, &Dlg::OnDuplicate, &Dlg::Update<ID_FORM_DUPLICATE>},
        {ID_FORM_DELETE, &Dlg::OnDelete, &Dlg::Update<ID_FORM_DELETE>},
        {ID_FORM_PREVIOUS, &Dlg::OnPrevious, &Dlg::Update<ID_FORM_PREVIOUS>},
        {ID_FORM_NEXT, &Dlg::OnNext, &Dlg::Update<ID_FORM_NEXT>},
        {ID_FORM_DIAL, &Dlg::OnDial, &Dlg::Update<ID_FORM_DIAL>},
        {ID_FORM_EXPORT_CALENDAR, &Dlg::OnExportCalendar, &Dlg::Update<ID_FORM_EXPORT_CALENDAR>},
        {ID_FILE_SAVE, &Dlg::OnSave, &Dlg::Update<ID_FILE_SAVE>},
    };
    return kCommands;
}

CEditRecordDlg::CEditRecordDlg(CDocumentSession& session, const FormSurroundings& surroundings, Opening opening,
                               FrameWindow& frame)
    : CEditRecordDlg(session, surroundings, opening, frame,
                     new CEditRecordForm(session.Doc(), surroundings.clock, surroundings.locale.Order(),
                                         surroundings.dialing.CanDial(false)),
                     new QToolBar) {}

CEditRecordDlg::CEditRecordDlg(CDocumentSession& session, const FormSurroundings& surroundings, Opening opening,
                               FrameWindow& frame, CEditRecordForm* form, QToolBar* bar)
    : CQuillaryDialog(kDialog, bar, *form, frame),
      m_session(session),
      m_doc(session.Doc()),
      m_surroundings(surroundings),
      m_opening(opening),
      m_form(form),
      m_actions(
          *this, RecordFormAccelerators(), [this](int command) { RunCommand(command); },
          [this](int command, CommandState& state) { UpdateCommand(command, state); }) {
    bar->setObjectName(QString::number(kToolBarRecord));
    m_actions.FillDialogBar(*bar, kToolBarRecord);
    qApp->installEventFilter(this);
    form->onTypingBegins = [this] { RaisePanel(); };
    form->onAction = [this](FieldType type, const QString& text) { Act(type, text); };
    form->onEditing = [this] { FollowFocus(QApplication::focusWidget()); };
}

bool CEditRecordDlg::HasRoomFor(std::size_t more, const CQuillaryDoc& doc, FrameWindow& frame) {
    if (doc.HasRoomFor(more)) return true;
    ShowMessage(frame.Window(), FromUtf8(FormatMessage(Message::TooManyRecords, {"The record was not added."})));
    return false;
}

bool CEditRecordDlg::IsChanged() const { return m_form->IsChanged(); }

void CEditRecordDlg::Load() { m_opening == Opening::NewRecord ? ShowNewRecord() : ShowRecord(); }

void CEditRecordDlg::FocusFirst() {
    m_form->FocusFirst();
    QEvent message(kRaisePanelMessage);
    QApplication::sendEvent(m_form, &message);
}

void CEditRecordDlg::ShowRecord() {
    m_form->ShowRecord();
    ShowState();
}

void CEditRecordDlg::ShowNewRecord() {
    m_form->ShowNewRecord();
    ShowState();
}

void CEditRecordDlg::ShowState() {
    m_actions.UpdateStates();
    const auto count = static_cast<int>(m_doc.Shown().size());
    Frame().ShowRecordCounter(count > 0 ? static_cast<int>(m_doc.CurrentRecord()) + 1 : 0, count);
}

// What began in the list ends there: the second half of a double click, whose first half opened the form, and the rest
// of a Return that was held down.
bool CEditRecordDlg::eventFilter(QObject* watched, QEvent* event) {
    auto* widget = watched->isWidgetType() ? static_cast<QWidget*>(watched) : nullptr;
    if (!widget || (widget != this && !isAncestorOf(widget))) return false;
    switch (event->type()) {
        case QEvent::MouseButtonPress:
            m_clicked = true;
            return false;
        case QEvent::MouseButtonDblClick:
            return !m_clicked;
        case QEvent::KeyPress: {
            const auto& key = static_cast<const QKeyEvent&>(*event);
            m_pressed = m_pressed || !key.isAutoRepeat();
            return !m_pressed && (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter);
        }
        default:
            return false;
    }
}

// ---- Commands

void CEditRecordDlg::SetState(int command, CommandState& state) const {
    const bool isRecord = !m_form->IsNew();
    const std::size_t index = m_doc.CurrentRecord();
    switch (command) {
        case ID_FORM_PREVIOUS:
            state.Enable(isRecord && index >= 1);
            return;
        case ID_FORM_NEXT:
            state.Enable(isRecord && index + 1 < m_doc.Shown().size());
            return;
        case ID_FORM_DIAL:
            if (!m_surroundings.dialing.CanDial(false)) {
                return state.Disable(FromUtf8(MessageText(m_surroundings.dialing.WhyNot())));
            }
            state.Enable(isRecord || !PhoneFields().empty());
            return;
        case ID_FORM_EXPORT_CALENDAR:
            state.Enable(isRecord);
            RequireDateField(m_doc, state);
            return;
        case ID_FORM_DELETE:
        case ID_FORM_DUPLICATE:
            state.Enable(isRecord);
            break;
        default:
            break;
    }
    if (m_doc.IsReadOnly()) state.Disable(FromUtf8(MessageText(Message::ReadOnly)));
}

bool CEditRecordDlg::Commit() {
    Failure failure;
    int control = 0;
    bool changed = false;
    if (!m_form->Commit(changed, failure, control)) return Refuse(control, FromUtf8(failure.text));
    m_hasCommitted = m_hasCommitted || changed;
    return true;
}

bool CEditRecordDlg::CommitAndSave() {
    const auto before = m_doc.ChangeNumber();
    if (!Commit()) return false;
    if (m_doc.ChangeNumber() != before) m_session.Save();
    return true;
}

void CEditRecordDlg::Move(bool (CQuillaryDoc::*step)()) {
    if (!CommitAndSave()) return;
    (m_doc.*step)();
    ShowRecord();
}

void CEditRecordDlg::OnNext() { Move(&CQuillaryDoc::NextRecord); }

void CEditRecordDlg::OnPrevious() { Move(&CQuillaryDoc::PreviousRecord); }

void CEditRecordDlg::OnNew() {
    if (!HasRoomFor(m_form->IsNew() ? 2 : 1, m_doc, Frame())) return;
    if (m_form->IsNew() && AskUser(Frame().Window(), QStringLiteral("Commit current record?"),
                                   {QStringLiteral("OK"), QStringLiteral("Cancel")}) != 0) {
        return;
    }
    if (CommitAndSave()) ShowNewRecord();
}

void CEditRecordDlg::OnDuplicate() {
    if (!HasRoomFor(1, m_doc, Frame()) || !Commit()) return;
    Failure failure;
    if (!m_doc.AppendRecord(m_doc.Shown()[m_doc.CurrentRecord()].Entries(), failure)) {
        ShowMessage(Frame().Window(), FromUtf8(failure.text));
        return;
    }
    m_hasCommitted = true;
    m_session.Save();
    ShowRecord();
}

void CEditRecordDlg::OnExportCalendar() {
    if (!CommitAndSave()) return;
    m_form->FollowRecord();
    ShowState();
    ExportToCalendar(m_doc, m_doc.CurrentRecord(), m_surroundings, Frame());
}

void CEditRecordDlg::OnSave() {
    if (!Commit()) return;
    m_session.Save();
    m_form->FollowRecord();
    ShowState();
}

std::vector<std::size_t> CEditRecordDlg::PhoneFields() const {
    std::vector<std::size_t> phones;
    for (std::size_t field = 0; field < m_doc.FieldCount(); ++field) {
        if (m_doc.TypeOf(field) == FieldType::Phone) phones.push_back(field);
    }
    return phones;
}

void CEditRecordDlg::OnDial() {
    const std::vector<std::size_t> phones = PhoneFields();
    if (phones.empty()) return ShowMessage(Frame().Window(), FromUtf8(MessageText(Message::NoPhoneColumns)));
    if (!m_surroundings.dialing.CanDial(true)) return;
    QString number;
    if (phones.size() == 1) {
        number = m_form->TextOf(phones[0]);
    } else {
        QStringList names;
        for (const std::size_t field : phones) names << OnOneLine(FromWide(m_doc.FieldName(field)));
        CDialNumberDlg dialog(names, Frame());
        if (dialog.exec() == Accepted) {
            number = m_form->TextOf(phones[static_cast<std::size_t>(dialog.Column())]);
        } else if (Frame().IsEndingDialogs()) {
            return;
        }  // cancelled by the user, it leaves the number to the phone program
    }
    m_surroundings.dialing.DialNumber(number.toStdString());
}

void CEditRecordDlg::Act(FieldType type, const QString& text) {
    if (type != FieldType::Phone) return OpenAddress(type, text, m_surroundings.launcher, Frame());
    if (!text.trimmed().isEmpty()) m_surroundings.dialing.DialNumber(text.toStdString());
}

void CEditRecordDlg::OnDelete() {
    const QString question = QStringLiteral("Are you sure that you want to delete this record?");
    const bool asks = m_surroundings.settings.ReadInt(kConfirmRecordDelete, kConfirmRecordDeleteDefault) != 0;
    if (asks && AskUser(Frame().Window(), question, {QStringLiteral("Yes"), QStringLiteral("No")}, 1) != 0) return;
    m_doc.RemoveRecord(m_doc.CurrentRecord());
    m_hasCommitted = true;
    done(Accepted);
}

}  // namespace quillary
