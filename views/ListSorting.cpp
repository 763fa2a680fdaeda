#include "views/ListSorting.h"

#include "query/Sort.h"
#include "query/SortRecordsDlg.h"
#include "ui/FrameWindow.h"
#include "views/QuillaryView.h"
#include "views/RecordHeader.h"

namespace quillary {

namespace {

Qt::SortOrder OrderOf(const SortKey& key) { return key.descending ? Qt::DescendingOrder : Qt::AscendingOrder; }

}  // namespace

void CListSorting::OnSortRecords() {
    CSortRecordsDlg dialog(m_doc, m_frame);
    if (dialog.exec() != QDialog::Accepted) return;
    m_marks = false;
    ClearHeaderSortMarks(-1);
    m_doc.SetSort(dialog.Keys());
    SortAndSave();
}

void CListSorting::OnHeaderItemClick(int column) {
    if (column < 0 || static_cast<std::size_t>(column) >= m_doc.FieldCount()) return;  // the filler column
    ClearHeaderSortMarks(column);
    const std::string& name = m_doc.Fields()[static_cast<std::size_t>(column)].name;
    const SortSettings keys = KeysInUse(m_doc);
    const bool flips = keys.size() == 1 && keys.front().field == name;
    m_doc.SetSort({{name, flips && !keys.front().descending}});
    SortAndSave();
    m_marks = true;
    m_header.ShowSortMark(column, OrderOf(m_doc.Sort().front()));
    m_frame.DocumentChanged();
}

void CListSorting::SortAndSave() {
    const bool resort = true;
    const bool save = true;
    // When the save fails, the new order stays all the same, unsaved.
    (void)m_view.RebuildList(resort, save);
}

int CListSorting::FindColumnByName(std::string_view name) const {
    const auto field = m_doc.FieldByName(name);
    return field ? static_cast<int>(*field) : -1;
}

void CListSorting::ClearHeaderSortMarks(int column) {
    if (m_header.sortIndicatorSection() != column) m_header.setSortIndicatorShown(false);
}

void CListSorting::ShowSortMark() {
    const SortSettings keys = m_marks ? KeysInUse(m_doc) : SortSettings();
    const int column = keys.size() == 1 ? FindColumnByName(keys.front().field) : -1;
    ClearHeaderSortMarks(column);
    if (column < 0) return;
    m_header.ShowSortMark(column, OrderOf(keys.front()));
}

}  // namespace quillary
