// The rows of the document list: all databases that were found, of which those of the chosen folder show, in the chosen
// order.
#pragma once

#include <QAbstractTableModel>
#include <optional>
#include <vector>

#include "app/DocListRow.h"

namespace quillary {

class CDocListModel : public QAbstractTableModel {
  public:
    enum Column { kName, kFolder, kDate, kSize, kColumnCount };
    using Folder = std::shared_ptr<const DocListFolder>;

    // Selection and current row stay with their databases, whatever changes.

    void Append(std::vector<DocListRow> rows);
    void Replace(std::vector<DocListRow> rows);
    void Remove(const Path& path);
    /// A database that has got another name.
    void Rename(const Path& path, DocListRow renamed);
    /// Shows the databases of this folder alone; nullopt: of all.
    void ShowFolder(std::optional<Path> folder);

    /// Of all databases, each once, in natural order.
    [[nodiscard]] std::vector<Folder> Folders() const;
    [[nodiscard]] std::size_t FoundCount() const { return m_rows.size(); }
    [[nodiscard]] const DocListRow& Row(int shown) const { return m_rows[m_shown[static_cast<std::size_t>(shown)]]; }
    /// Invalid when it does not show.
    [[nodiscard]] QModelIndex IndexOf(const Path& path) const;

    [[nodiscard]] static QString DateText(std::int64_t modified);
    [[nodiscard]] static QString SizeText(std::uint64_t size);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    void sort(int column, Qt::SortOrder order) override;

  private:
    template <class Change>
    void ChangeRows(const Change& change);
    [[nodiscard]] bool IsBefore(const DocListRow& a, const DocListRow& b) const;

    std::vector<DocListRow> m_rows;
    std::vector<std::uint32_t> m_shown;  // indices into m_rows, in the order of the list
    std::optional<Path> m_folder;
    int m_sortColumn = kName;
    bool m_descending = false;
};

}  // namespace quillary
