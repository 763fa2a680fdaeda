#include "admin/LockPasswordDlg.h"

#include <QLineEdit>

#include "admin/DatabaseInfo.h"
#include "db/QuillaryDoc.h"
#include "ui/HelpTopics.h"
#include "ui/SecretText.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kPassword = 1034;
constexpr ControlInfo kControls[] = {
    {kPassword, ControlKind::PasswordEdit, u"Enter Database Info Password:"},
};
constexpr DialogInfo kDialog{138, u"Password", kControls, kTopicEnterLockPassword};

}  // namespace

CLockPasswordDlg::CLockPasswordDlg(const CQuillaryDoc& doc, std::int32_t lock, FrameWindow& frame)
    : CQuillaryDialog(kDialog, frame), m_doc(doc), m_lock(lock) {}

CLockPasswordDlg::~CLockPasswordDlg() { SecretText::Wipe(*Control<QLineEdit>(kPassword)); }

bool CLockPasswordDlg::Commit() {
    const SecretText typed(*Control<QLineEdit>(kPassword));
    if (m_lock == 0) {
        m_lock = MakeInfoLock(typed.Text(), m_doc.Page());
        return true;
    }
    Failure failure;
    return UnlockInfo(m_lock, typed.Text(), m_doc.Page(), failure) || Refuse(kPassword, FromUtf8(failure.text));
}

}  // namespace quillary
