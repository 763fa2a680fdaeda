#include "remote/RemoteInfoDlg.h"

#include "ui/HelpTopics.h"
#include "ui/TextEdit.h"

namespace quillary {

namespace {

constexpr int kText = 1059;
constexpr DialogInfo kDialog{212, u"DB Search Info", {}, kTopicRemoteResults, Buttons::Ok};

}  // namespace

CRemoteInfoDlg::CRemoteInfoDlg(const QString& text, FrameWindow& frame) : CRemoteInfoDlg(text, frame, new CTextEdit) {}

CRemoteInfoDlg::CRemoteInfoDlg(const QString& text, FrameWindow& frame, CTextEdit* edit)
    : CQuillaryDialog(kDialog, nullptr, Centered(*edit), frame), m_edit(edit) {
    m_edit->setObjectName(QString::number(kText));
    m_edit->setAccessibleName(QStringLiteral("Information"));
    m_edit->setPlaceholderText(QStringLiteral("No information."));
    m_edit->SetText(text);
    m_edit->SetReadOnly(true);
    m_edit->viewport()->setBackgroundRole(QPalette::Window);
}

void CRemoteInfoDlg::FocusFirst() { m_edit->setFocus(); }

}  // namespace quillary
