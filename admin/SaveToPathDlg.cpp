#include "admin/SaveToPathDlg.h"

#include <QComboBox>
#include <QLabel>

#include "ui/HelpTopics.h"
#include "ui/WaitCursor.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr int kFolder = 1002;
constexpr int kLocation = 1003;
constexpr int kPath = 1011;
constexpr ControlInfo kControls[] = {
    {kFolder, ControlKind::ComboBox, u"Folder"},
    {kLocation, ControlKind::ComboBox, u"Storage Location"},
    {kPath, ControlKind::Text, u""},
};
constexpr DialogInfo kDialog{214, u"Save to Path", kControls, kTopicPath};

}  // namespace

CSaveToPathDlg::CSaveToPathDlg(const StorageLocations& locations, FrameWindow& frame)
    : CQuillaryDialog(kDialog, frame), m_locations(locations) {}

void CSaveToPathDlg::Load() {
    m_bases = SaveLocations(m_locations);
    auto* location = Control<QComboBox>(kLocation);
    for (const SaveLocation& base : m_bases) location->addItem(OnOneLine(FromUtf8(base.name)));
    connect(location, &QComboBox::currentIndexChanged, this, [this] { FillFolders(); });
    connect(Control<QComboBox>(kFolder), &QComboBox::currentIndexChanged, this, [this] { ShowPath(); });
    FillFolders();
}

void CSaveToPathDlg::FillFolders() {
    const WaitCursor wait;
    const auto location = static_cast<std::size_t>(Control<QComboBox>(kLocation)->currentIndex());
    m_folders = SaveFolders(m_locations, m_bases[location].base);
    QStringList names;
    for (const std::string& folder : m_folders) names << OnOneLine(FromUtf8(folder));
    auto* folders = Control<QComboBox>(kFolder);
    folders->clear();
    folders->addItems(names);
}

void CSaveToPathDlg::ShowPath() {
    const QString path = OnOneLine(FromUtf8(ChosenPath()));
    auto* label = Control<QLabel>(kPath);
    label->setText(path);
    label->setAccessibleName(path);
}

std::string CSaveToPathDlg::ChosenPath() const {
    const int location = Control<QComboBox>(kLocation)->currentIndex();
    const int folder = Control<QComboBox>(kFolder)->currentIndex();
    if (location < 0 || folder < 0) return {};
    return SavePath(m_bases[static_cast<std::size_t>(location)].base, m_folders, static_cast<std::size_t>(folder));
}

bool CSaveToPathDlg::Commit() {
    m_path = ChosenPath();
    return true;
}

}  // namespace quillary
