// Answers the record list cell by cell from the document; holds no record and no text of its own.
#pragma once

#include <QAbstractTableModel>
#include <cstdint>
#include <string>

#include "db/RecordBuffer.h"

namespace quillary {

class CQuillaryDoc;

/// One row a shown record, one column a field, and behind them, when there is any field, the empty filler column.
class CRecordListModel : public QAbstractTableModel {
  public:
    explicit CRecordListModel(const CQuillaryDoc& doc) : m_doc(doc) {}

    /// Rows or columns are others than before.
    void Rebuild();
    [[nodiscard]] int FieldColumns() const;
    [[nodiscard]] bool IsFiller(int column) const { return column == FieldColumns(); }
    /// The cell's first line with its directives expanded, as Find searches it.
    [[nodiscard]] QString CellText(int row, int column) const;
    [[nodiscard]] Qt::Alignment AlignmentOf(int column) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

  private:
    /// The entries of the record at `row`. A list paints row by row, so they are found once for all cells of a row.
    [[nodiscard]] const EntryTable& EntriesOf(int row) const;
    [[nodiscard]] QString SortDescription(int column) const;

    // What m_entries was filled from. A change moves the number, a save moves the bytes: both are compared.
    struct Source {
        int row = -1;
        std::uint64_t changeNumber = 0;
        const char* data = nullptr;

        bool operator==(const Source&) const = default;
    };
    const CQuillaryDoc& m_doc;
    mutable EntryTable m_entries;
    mutable Source m_source;
    mutable std::string m_display;
    mutable std::string m_cell;
};

}  // namespace quillary
