#include "admin/PreferencesDlg.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>

#include "ui/ColorButton.h"
#include "ui/HelpTopics.h"
#include "ui/RowColor.h"
#include "ui/SpinEdit.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kLocation = 1009;
constexpr int kMaxResults = 1005;
constexpr int kMaxResultsSpin = 1057;
constexpr int kConfirmDelete = 1003;
constexpr int kRowColor = 1006;
constexpr ControlInfo kControls[] = {
    {kLocation, ControlKind::ComboBox, u"Save New Databases to:"},
    {kMaxResults, ControlKind::Number, u"Max Results on Remote Queries", kMaxResultsSpin},
    {kConfirmDelete, ControlKind::CheckBox, u"Confirm Record Delete"},
    {kRowColor, ControlKind::Color, u"Alternating Row Color"},
};
constexpr DialogInfo kDialog{133, u"Preferences", kControls, kTopicPreferences};

}  // namespace

CPreferencesDlg::CPreferencesDlg(Settings& settings, const StorageLocations& locations, FrameWindow& frame)
    : CQuillaryDialog(kDialog, frame), m_settings(settings), m_locations(locations) {}

void CPreferencesDlg::Load() {
    m_preferences = Preferences::Load(m_settings);
    auto* location = Control<QComboBox>(kLocation);
    const auto texts = LocationTexts(m_locations);
    for (const std::string& text : texts) location->addItem(FromUtf8(text));
    location->setCurrentIndex(static_cast<int>(LocationEntry(m_preferences.location, texts.size())));
    Control<CSpinEdit>(kMaxResultsSpin)->SetRange(kFewestRemoteResults, kMostRemoteResults);
    Control<QLineEdit>(kMaxResults)->setText(QString::number(m_preferences.maxRemoteResults));
    Control<QCheckBox>(kConfirmDelete)->setChecked(m_preferences.confirmRecordDelete);
    Control<CColorButton>(kRowColor)->SetColor(RowColor(m_preferences.rowColor).value_or(Qt::white));
}

bool CPreferencesDlg::IsChanged() const {
    const QColor loaded = RowColor(m_preferences.rowColor).value_or(Qt::white);
    return CQuillaryDialog::IsChanged() || Control<CColorButton>(kRowColor)->Color().rgb() != loaded.rgb();
}

bool CPreferencesDlg::Commit() {
    Failure failure;
    const auto maxResults = ReadMaxRemoteResults(ToWide(Control<QLineEdit>(kMaxResults)->text()), failure);
    if (!maxResults) return Refuse(kMaxResults, FromUtf8(failure.text));
    Preferences edited;
    edited.location = Control<QComboBox>(kLocation)->currentIndex();
    edited.maxRemoteResults = *maxResults;
    edited.confirmRecordDelete = Control<QCheckBox>(kConfirmDelete)->isChecked();
    edited.rowColor = RowColorPreference(Control<CColorButton>(kRowColor)->Color());
    if (!edited.Store(m_settings, failure)) return Refuse(kOkButton, FromUtf8(failure.text));
    m_preferences = edited;
    return true;
}

}  // namespace quillary
