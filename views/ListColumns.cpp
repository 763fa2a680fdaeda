#include "views/ListColumns.h"

#include <algorithm>

#include "ui/FrameWindow.h"
#include "ui/WaitCursor.h"
#include "views/DocumentSession.h"
#include "views/QuillaryView.h"
#include "views/RecordCellDelegate.h"
#include "views/RecordHeader.h"
#include "views/RecordListModel.h"

namespace quillary {

namespace {

constexpr int kSmallestFiller = 10;
constexpr int kLargestWidth = 4096;

}  // namespace

void CListColumns::Build() {
    m_model.Rebuild();
    if (m_model.columnCount() == 0) return;
    const auto& fields = m_session.Doc().Fields();
    for (int k = 0; k < m_model.FieldColumns(); ++k) {
        m_header.SetWidth(k, ShownWidth(fields[static_cast<std::size_t>(k)]));
    }
    m_header.setSectionResizeMode(m_model.FieldColumns(), QHeaderView::Fixed);
    FitFiller();
}

void CListColumns::FitFiller() {
    if (m_model.columnCount() == 0) return;
    int sum = 0;
    for (int k = 0; k < m_model.FieldColumns(); ++k) sum += m_header.sectionSize(k);
    const int client = m_view.viewport()->width();
    m_header.SetWidth(m_model.FieldColumns(), sum < client - kSmallestFiller ? client - sum : kSmallestFiller);
}

void CListColumns::StoreWidth(int column) {
    CQuillaryDoc& doc = m_session.Doc();
    const auto before = m_session.BeforeChange();
    doc.SetFieldWidth(static_cast<std::size_t>(column), std::min(m_header.sectionSize(column), kLargestWidth));
    if (!m_session.SaveOrRestore(*before)) (void)m_view.RebuildList(false, false);
}

void CListColumns::Fit(int column) {
    if (m_model.IsFiller(column)) return;
    const WaitCursor wait;
    const QFontMetrics metrics(m_view.font());
    const int widestLetter = metrics.maxWidth();
    int width = m_header.sectionSizeHint(column) - 2 * CRecordCellDelegate::kTextMargin;
    for (int row = 0; row < m_model.rowCount(); ++row) {
        const QString text = m_model.CellText(row, column);
        if (text.size() * widestLetter > width) width = std::max(width, metrics.horizontalAdvance(text));
    }
    m_header.SetWidth(column, std::min(width + 2 * CRecordCellDelegate::kTextMargin + 1, m_view.viewport()->width()));
    FitFiller();
    StoreWidth(column);
}

void CListColumns::Widen(int column, int letters) {
    if (m_model.IsFiller(column)) return;
    const int width = m_header.sectionSize(column) + letters * QFontMetrics(m_view.font()).averageCharWidth();
    m_header.SetWidth(column, std::clamp(width, m_header.minimumSectionSize(), kLargestWidth));
    FitFiller();
    StoreWidth(column);
}

}  // namespace quillary
