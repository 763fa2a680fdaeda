#include "app/FolderBox.h"

#include <QStyle>
#include <QStyleOption>
#include <algorithm>

namespace quillary {

namespace {

constexpr int kMostFolderLetters = 50;

QByteArray DataOf(const CDocListModel::Folder& folder) { return QByteArray::fromStdString(folder->path.native()); }

}  // namespace

CFolderBox::CFolderBox() {
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(6);
    setMaximumWidth(kMostFolderLetters * fontMetrics().averageCharWidth());
    addItem(QStringLiteral("All Folders"));
}

bool CFolderBox::Fill(const std::vector<CDocListModel::Folder>& folders) {
    bool same = count() == static_cast<int>(folders.size()) + 1;
    for (int i = 1; same && i < count(); ++i) {
        same = itemData(i).toByteArray() == DataOf(folders[static_cast<std::size_t>(i) - 1]);
    }
    if (same) return true;
    const QVariant chosen = currentData();
    while (count() > 1) removeItem(1);
    for (const CDocListModel::Folder& folder : folders) addItem(folder->name, DataOf(folder));
    const int again = chosen.isNull() ? 0 : findData(chosen);
    setCurrentIndex(std::max(again, 0));
    return again >= 0;
}

std::optional<Path> CFolderBox::Chosen() const {
    const QVariant folder = currentData();
    return folder.isNull() ? std::nullopt : std::optional<Path>(folder.toByteArray().toStdString());
}

void CFolderBox::initStyleOption(QStyleOptionComboBox* option) const {
    QComboBox::initStyleOption(option);
    const QRect field = style()->subControlRect(QStyle::CC_ComboBox, option, QStyle::SC_ComboBoxEditField, this);
    constexpr int kStyleMargin = 2;  // that the style leaves free at both sides of the text
    option->currentText =
        option->fontMetrics.elidedText(option->currentText, Qt::ElideMiddle, field.width() - 2 * kStyleMargin);
}

}  // namespace quillary
