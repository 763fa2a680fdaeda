#include "integration/DialNumberDlg.h"

#include <QComboBox>
#include <utility>

#include "ui/HelpTopics.h"

namespace quillary {

namespace {

constexpr int kColumn = 1064;
constexpr ControlInfo kControls[] = {
    {kColumn, ControlKind::ComboBox, u"Choose Phone Column to Dial"},
};
constexpr DialogInfo kDialog{216, u"Dial Number", kControls, kTopicPhoneDial};

}  // namespace

CDialNumberDlg::CDialNumberDlg(QStringList columns, FrameWindow& frame)
    : CQuillaryDialog(kDialog, frame), m_columns(std::move(columns)) {}

void CDialNumberDlg::Load() { Control<QComboBox>(kColumn)->addItems(m_columns); }

bool CDialNumberDlg::Commit() {
    m_column = Control<QComboBox>(kColumn)->currentIndex();
    return true;
}

}  // namespace quillary
