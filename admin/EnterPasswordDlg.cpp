#include "admin/EnterPasswordDlg.h"

#include <QLineEdit>

#include "db/QuillaryDoc.h"
#include "ui/HelpTopics.h"
#include "ui/SecretText.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kPassword = 1034;
constexpr ControlInfo kControls[] = {
    {kPassword, ControlKind::PasswordEdit, u"This database is locked. Please enter the password to view its contents."},
};
constexpr DialogInfo kDialog{166, u"Enter Password", kControls, kTopicEnterPassword};

}  // namespace

CEnterPasswordDlg::CEnterPasswordDlg(const CQuillaryDoc& doc, FrameWindow& frame)
    : CQuillaryDialog(kDialog, frame), m_doc(doc) {}

CEnterPasswordDlg::~CEnterPasswordDlg() { SecretText::Wipe(*Control<QLineEdit>(kPassword)); }

bool CEnterPasswordDlg::Commit() {
    const SecretText typed(*Control<QLineEdit>(kPassword));
    return m_doc.CheckDatabasePassword(typed.Text()) ||
           Refuse(kPassword, FromUtf8(MessageText(Message::WrongDatabasePassword)));
}

}  // namespace quillary
