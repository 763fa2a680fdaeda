#include "views/RecordListModel.h"

#include "db/CellText.h"
#include "db/QuillaryDoc.h"
#include "query/Sort.h"
#include "ui/ToolTip.h"
#include "ui/WideText.h"

namespace quillary {

void CRecordListModel::Rebuild() {
    beginResetModel();
    endResetModel();
}

int CRecordListModel::FieldColumns() const { return static_cast<int>(m_doc.FieldCount()); }

int CRecordListModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(m_doc.Shown().size());
}

int CRecordListModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() || FieldColumns() == 0 ? 0 : FieldColumns() + 1;
}

const EntryTable& CRecordListModel::EntriesOf(int row) const {
    const RecordRef& record = m_doc.Shown()[static_cast<std::size_t>(row)];
    const Source source{row, m_doc.ChangeNumber(), record.data};
    if (m_source != source) {
        m_entries.Fill(record.Entries(), m_doc.FieldCount());
        m_source = source;
    }
    return m_entries;
}

QString CRecordListModel::CellText(int row, int column) const {
    if (row < 0 || row >= rowCount() || column < 0 || column >= FieldColumns()) return {};
    const auto field = static_cast<std::size_t>(column);
    const EntryTable& entries = EntriesOf(row);
    if (!entries.Has(field)) return {};
    m_cell.clear();
    AppendListCell(m_doc, field, entries.Text(field), static_cast<std::size_t>(row), m_display, m_cell);
    return FromWide(m_doc.Page().ToWide(m_cell));
}

Qt::Alignment CRecordListModel::AlignmentOf(int column) const {
    const bool right =
        !IsFiller(column) && InfoOf(m_doc.TypeOf(static_cast<std::size_t>(column))).align == Align::Right;
    return (right ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter;
}

QVariant CRecordListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    if (role == Qt::DisplayRole) return CellText(index.row(), index.column());
    if (role == Qt::TextAlignmentRole) return QVariant::fromValue(AlignmentOf(index.column()));
    return {};
}

QVariant CRecordListModel::headerData(int section, Qt::Orientation orientation, int role) const {
    if (orientation != Qt::Horizontal || section < 0 || section >= columnCount()) return {};
    const QString name = IsFiller(section) ? QString() : FromWide(m_doc.FieldName(static_cast<std::size_t>(section)));
    if (role == Qt::DisplayRole) return name;
    if (role == Qt::AccessibleTextRole && IsFiller(section)) return QStringLiteral("Empty column");
    if (role == Qt::ToolTipRole) return PlainToolTip(name);  // the heading may be too narrow for it
    if (role == Qt::TextAlignmentRole) return QVariant::fromValue(AlignmentOf(section));
    if (role == Qt::AccessibleDescriptionRole) return SortDescription(section);
    return {};
}

// What the mark in a heading says to those who do not see it, and of each of several keys.
QString CRecordListModel::SortDescription(int column) const {
    const SortSettings keys = KeysInUse(m_doc);
    for (std::size_t k = 0; k < keys.size(); ++k) {
        if (m_doc.FieldByName(keys[k].field) != static_cast<std::size_t>(column)) continue;
        return QStringLiteral("Sort key %1, %2")
            .arg(k + 1)
            .arg(keys[k].descending ? QStringLiteral("descending") : QStringLiteral("ascending"));
    }
    return {};
}

}  // namespace quillary
