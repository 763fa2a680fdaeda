#include "admin/DatabaseOptionsDlg.h"

#include <QCheckBox>

#include "ui/HelpTopics.h"

namespace quillary {

namespace {

constexpr int kLongDates = 1003;
constexpr int kEditOnSelect = 1013;
constexpr ControlInfo kControls[] = {
    {kLongDates, ControlKind::CheckBox, u"Display dates in long format"},
    {kEditOnSelect, ControlKind::CheckBox, u"On select, go to Edit View"},
};
constexpr DialogInfo kDialog{149, u"Options", kControls, kTopicDatabaseOptions};

}  // namespace

CDatabaseOptionsDlg::CDatabaseOptionsDlg(const DatabaseOptions& options, FrameWindow& frame)
    : CQuillaryDialog(kDialog, frame), m_options(options) {}

void CDatabaseOptionsDlg::Load() {
    Control<QCheckBox>(kLongDates)->setChecked(m_options.longDates);
    Control<QCheckBox>(kEditOnSelect)->setChecked(m_options.editOnSelect);
}

bool CDatabaseOptionsDlg::Commit() {
    m_options.longDates = Control<QCheckBox>(kLongDates)->isChecked();
    m_options.editOnSelect = Control<QCheckBox>(kEditOnSelect)->isChecked();
    return true;
}

}  // namespace quillary
