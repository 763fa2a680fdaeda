#include "admin/DatabaseInfoDlg.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QPushButton>

#include "admin/DatabaseInfo.h"
#include "admin/LockPasswordDlg.h"
#include "db/QuillaryDoc.h"
#include "ui/CommandIds.h"
#include "ui/HelpTopics.h"
#include "ui/Mnemonics.h"
#include "ui/TextEdit.h"
#include "ui/ToolTip.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kBar = 159;
constexpr int kText = 1038;
constexpr DialogInfo kDialog{137, u"Database Info", {}, kTopicDatabaseInfo};

}  // namespace

CDatabaseInfoDlg::CDatabaseInfoDlg(const CQuillaryDoc& doc, FrameWindow& frame)
    : CDatabaseInfoDlg(doc, frame, new QWidget, new CTextEdit) {}

CDatabaseInfoDlg::CDatabaseInfoDlg(const CQuillaryDoc& doc, FrameWindow& frame, QWidget* bar, CTextEdit* edit)
    : CQuillaryDialog(kDialog, bar, Centered(*edit), frame),
      m_doc(doc),
      m_edit(edit),
      m_unlockButton(new QPushButton),
      m_lockButton(new QPushButton),
      m_text(doc.InfoTextBytes()),
      m_lock(doc.InfoLockHash()) {
    bar->setObjectName(QString::number(kBar));
    auto* buttons = new QHBoxLayout(bar);
    buttons->setContentsMargins({});
    const QStringList texts = WithMnemonics({QStringLiteral("Unlock Text"), QStringLiteral("Lock Text")});
    const auto add = [&](QPushButton& button, int command, const QString& text) {
        button.setObjectName(QString::number(command));
        button.setText(text);
        button.setAutoDefault(false);
        buttons->addWidget(&button);
        connect(&button, &QPushButton::clicked, this, &CDatabaseInfoDlg::AskForLockPassword);
    };
    add(*m_unlockButton, ID_INFO_UNLOCK, texts[0]);
    add(*m_lockButton, ID_INFO_LOCK, texts[1]);
    buttons->addStretch(1);

    m_edit->setObjectName(QString::number(kText));
    m_edit->setAccessibleName(QStringLiteral("Info Text"));

    if (m_doc.IsReadOnly()) {
        const QString why = FromUtf8(MessageText(Message::ReadOnly));
        for (QWidget* widget : {static_cast<QWidget*>(m_edit), bar, static_cast<QWidget*>(m_lockButton),
                                static_cast<QWidget*>(m_unlockButton)}) {
            SetPlainToolTip(*widget, why);
        }
        bar->setEnabled(false);
    }
}

void CDatabaseInfoDlg::Load() {
    m_loaded = FromWide(m_doc.InfoText());
    m_edit->SetText(m_loaded);
    ShowLock();
}

void CDatabaseInfoDlg::FocusFirst() { m_edit->setFocus(); }

bool CDatabaseInfoDlg::IsTextChanged() const { return m_edit->document()->isModified() && m_edit->Text() != m_loaded; }

bool CDatabaseInfoDlg::IsChanged() const { return IsTextChanged() || m_lock != m_doc.InfoLockHash(); }

bool CDatabaseInfoDlg::Commit() {
    if (!IsTextChanged()) return true;
    Failure failure;
    auto stored = StoredInfoText(ToWide(m_edit->Text()), m_doc.Page(), failure);
    if (!stored) return Refuse(kText, FromUtf8(failure.text));
    m_text = std::move(*stored);
    return true;
}

void CDatabaseInfoDlg::ShowLock() {
    const bool isLocked = m_lock != 0;
    m_edit->SetReadOnly(isLocked || m_doc.IsReadOnly());
    m_edit->viewport()->setBackgroundRole(m_edit->isReadOnly() ? QPalette::Window : QPalette::Base);
    m_unlockButton->setVisible(isLocked);
    m_lockButton->setVisible(!isLocked);
}

void CDatabaseInfoDlg::AskForLockPassword() {
    CLockPasswordDlg dialog(m_doc, m_lock, Frame());
    if (dialog.exec() == Accepted) {
        m_lock = dialog.Lock();
        ShowLock();
    }
    m_edit->setFocus();  // the button may be gone
}

}  // namespace quillary
