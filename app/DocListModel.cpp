#include "app/DocListModel.h"

#include <QDateTime>
#include <QLocale>
#include <algorithm>
#include <iterator>
#include <utility>

#include "platform/NativePath.h"
#include "ui/ToolTip.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

template <class T>
int Compare(const T& a, const T& b) {
    return a < b ? -1 : b < a ? 1 : 0;
}

}  // namespace

bool CDocListModel::IsBefore(const DocListRow& a, const DocListRow& b) const {
    const auto byFolder = [&] { return a.folder == b.folder ? 0 : a.folder->order.compare(b.folder->order); };
    int order = 0;
    switch (m_sortColumn) {
        case kFolder:
            order = byFolder();
            break;
        case kDate:
            order = Compare(a.modified, b.modified);
            break;
        case kSize:
            order = Compare(a.size, b.size);
            break;
        default:
            break;
    }
    if (order == 0) order = a.order.compare(b.order);
    if (order == 0) order = byFolder();
    if (order == 0) order = a.path.native().compare(b.path.native());
    return m_descending ? order > 0 : order < 0;
}

template <class Change>
void CDocListModel::ChangeRows(const Change& change) {
    emit layoutAboutToBeChanged();
    const QModelIndexList before = persistentIndexList();
    std::vector<Path> paths;
    for (const QModelIndex& index : before) paths.push_back(Row(index.row()).path);
    change();
    m_shown.clear();
    for (std::uint32_t i = 0; i < m_rows.size(); ++i) {
        if (!m_folder || m_rows[i].folder->path == *m_folder) m_shown.push_back(i);
    }
    std::sort(m_shown.begin(), m_shown.end(),
              [this](std::uint32_t a, std::uint32_t b) { return IsBefore(m_rows[a], m_rows[b]); });
    QModelIndexList after;
    for (qsizetype i = 0; i < before.size(); ++i) {
        after << IndexOf(paths[static_cast<std::size_t>(i)]).siblingAtColumn(before[i].column());
    }
    changePersistentIndexList(before, after);
    emit layoutChanged();
}

void CDocListModel::Append(std::vector<DocListRow> rows) {
    ChangeRows([&] { std::move(rows.begin(), rows.end(), std::back_inserter(m_rows)); });
}

void CDocListModel::Replace(std::vector<DocListRow> rows) {
    ChangeRows([&] { m_rows = std::move(rows); });
}

void CDocListModel::Remove(const Path& path) {
    ChangeRows([&] { std::erase_if(m_rows, [&](const DocListRow& row) { return row.path == path; }); });
}

void CDocListModel::Rename(const Path& path, DocListRow renamed) {
    const QModelIndex row = IndexOf(path);
    if (!row.isValid()) return;
    const auto at = m_shown[static_cast<std::size_t>(row.row())];
    // A new name before the rows are sorted, so that what is selected is found by it.
    m_rows[at] = std::move(renamed);
    ChangeRows([] {});
}

void CDocListModel::ShowFolder(std::optional<Path> folder) {
    ChangeRows([&] { m_folder = std::move(folder); });
}

std::vector<CDocListModel::Folder> CDocListModel::Folders() const {
    std::vector<Folder> folders;
    for (const DocListRow& row : m_rows) {
        if (folders.empty() || folders.back() != row.folder) folders.push_back(row.folder);
    }
    std::sort(folders.begin(), folders.end(), [](const Folder& a, const Folder& b) {
        const int order = a->order.compare(b->order);
        return order != 0 ? order < 0 : a->path.native() < b->path.native();
    });
    const auto isSame = [](const Folder& a, const Folder& b) { return a->path == b->path; };
    folders.erase(std::unique(folders.begin(), folders.end(), isSame), folders.end());
    return folders;
}

QModelIndex CDocListModel::IndexOf(const Path& path) const {
    const auto found =
        std::find_if(m_shown.begin(), m_shown.end(), [&](std::uint32_t i) { return m_rows[i].path == path; });
    return found == m_shown.end() ? QModelIndex() : index(static_cast<int>(found - m_shown.begin()), kName);
}

QString CDocListModel::DateText(std::int64_t modified) {
    return QLocale().toString(QDateTime::fromSecsSinceEpoch(modified), QLocale::ShortFormat);
}

QString CDocListModel::SizeText(std::uint64_t size) {
    return QLocale().formattedDataSize(static_cast<qint64>(size), 1, QLocale::DataSizeSIFormat);
}

int CDocListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_shown.size());
}

int CDocListModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kColumnCount; }

QVariant CDocListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const DocListRow& row = Row(index.row());
    if (role == Qt::ToolTipRole) return PlainToolTip(OnOneLine(FromPath(row.path)));
    if (role == Qt::TextAlignmentRole && index.column() == kSize) return int(Qt::AlignRight | Qt::AlignVCenter);
    if (role != Qt::DisplayRole && role != Qt::EditRole) return {};
    switch (index.column()) {
        case kName:
            return row.name;
        case kFolder:
            return row.folder->name;
        case kDate:
            return DateText(row.modified);
        default:
            return SizeText(row.size);
    }
}

QVariant CDocListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    static const QString kHeadings[kColumnCount] = {QStringLiteral("Name"), QStringLiteral("Folder"),
                                                    QStringLiteral("Date"), QStringLiteral("Size")};
    if (orientation != Qt::Horizontal) return {};
    if (role == Qt::TextAlignmentRole) {
        return int((section == kSize ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    }
    return role == Qt::DisplayRole ? kHeadings[section] : QVariant();
}

Qt::ItemFlags CDocListModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index) | Qt::ItemNeverHasChildren;
    return index.column() == kName ? flags | Qt::ItemIsEditable : flags;
}

void CDocListModel::sort(int column, Qt::SortOrder order) {
    ChangeRows([&] {
        m_sortColumn = column;
        m_descending = order == Qt::DescendingOrder;
    });
}

}  // namespace quillary
