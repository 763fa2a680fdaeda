#include "admin/ChangePasswordDlg.h"

#include <QLineEdit>

#include "db/QuillaryDoc.h"
#include "ui/HelpTopics.h"
#include "ui/SecretText.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kOldPassword = 1036;
constexpr int kNewPassword = 1006;
constexpr int kRetyped = 1007;
constexpr ControlInfo kControls[] = {
    {kOldPassword, ControlKind::PasswordEdit, u"Old Password:"},
    {kNewPassword, ControlKind::PasswordEdit, u"New Password:"},
    {kRetyped, ControlKind::PasswordEdit, u"Retype New:"},
};
constexpr DialogInfo kDialog{143, u"Change Password", kControls, kTopicChangePassword};

}  // namespace

CChangePasswordDlg::CChangePasswordDlg(CQuillaryDoc& doc, FrameWindow& frame)
    : CQuillaryDialog(kDialog, frame), m_doc(doc) {}

CChangePasswordDlg::~CChangePasswordDlg() {
    for (const ControlInfo& control : kControls) SecretText::Wipe(*Control<QLineEdit>(control.id));
}

bool CChangePasswordDlg::Commit() {
    const SecretText oldPassword(*Control<QLineEdit>(kOldPassword));
    const SecretText newPassword(*Control<QLineEdit>(kNewPassword));
    const SecretText retyped(*Control<QLineEdit>(kRetyped));
    if (!m_doc.CheckDatabasePassword(oldPassword.Text())) {
        return Refuse(kOldPassword, FromUtf8(MessageText(Message::WrongDatabasePassword)));
    }
    if (newPassword.Text() != retyped.Text()) {
        return Refuse(kRetyped, FromUtf8(MessageText(Message::PasswordsDiffer)));
    }
    m_doc.SetDatabasePassword(newPassword.Text());
    return true;
}

}  // namespace quillary
