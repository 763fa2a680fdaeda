// The results of a search as a tree: files and packages, the files of a package below it, each with a tick that marks
// it for download.
#pragma once

#include <QTreeWidget>
#include <functional>

namespace quillary {

class AnsiText;
class CRemoteCatalog;
struct CRemoteResult;

class CRemoteResultsView : public QTreeWidget {
  public:
    /// A tick that the user sets or takes away goes to its result at once. `page` is the catalogue's.
    CRemoteResultsView(CRemoteCatalog& catalog, const AnsiText& page);

    /// Shows what the catalogue has fetched since, in the order that a heading was clicked for, and the ticks as they
    /// are.
    void Refresh();
    /// Null when none is selected.
    [[nodiscard]] CRemoteResult* Selected() const;
    void Close(const CRemoteResult& package);

    /// A package of which nobody has fetched the files was opened; the event that opened it has been dealt with.
    std::function<void(CRemoteResult& package)> onOpen;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void changeEvent(QEvent* event) override;

  private:
    class Row;
    class Delegate;

    [[nodiscard]] Row* RowAt(int index) const;
    [[nodiscard]] Row* MakeRow(CRemoteResult& result) const;
    void OnExpanded(QTreeWidgetItem* item);
    static void OnChanged(QTreeWidgetItem* item, int column);
    void SortBy(int column);
    void Sort();

    CRemoteCatalog& m_catalog;
    const AnsiText& m_page;
};

}  // namespace quillary
