#include "app/WindowQuestions.h"

#include "admin/EnterPasswordDlg.h"
#include "db/QuillaryDoc.h"
#include "ui/FrameWindow.h"
#include "ui/MessageBox.h"
#include "ui/WideText.h"

namespace quillary {

void CWindowQuestions::Tell(const Failure& failure) {
    if (!m_quiet) ShowMessage(m_frame.Window(), FromUtf8(failure.text), OnOneLine(FromUtf8(failure.reason)));
}

bool CWindowQuestions::AskDatabasePassword(const CQuillaryDoc& doc) {
    if (m_knownLockWord != 0 && doc.DatabasePasswordHash() == m_knownLockWord) return true;
    if (m_quiet) return false;
    CEnterPasswordDlg dialog(doc, m_frame);
    return dialog.exec() == QDialog::Accepted;
}

}  // namespace quillary
