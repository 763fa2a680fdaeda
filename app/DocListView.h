// The list of databases itself: columns that fit the window, names edited in place, a menu by every way to ask for one.
#pragma once

#include <QTreeView>
#include <functional>
#include <optional>

#include "db/FileAccess.h"

namespace quillary {

class CDocListModel;

class CDocListView : public QTreeView {
  public:
    explicit CDocListView(CDocListModel& model);

    /// Gives the name what room there is. The other columns show as far as they fit, the folder last.
    void FitColumns();
    [[nodiscard]] std::optional<Path> Selected() const;
    /// Selects the row and brings it into sight. False when the database does not show.
    bool Select(const Path& path);
    /// The first row, when none is selected, so that the keys have one to act on.
    void SelectFirst();
    /// Opens the name for editing; with `text` in place of the name when there is one.
    void EditName(const Path& path, const std::optional<QString>& text = {});
    [[nodiscard]] bool IsEditing() const { return state() == EditingState; }

    /// Where a menu was asked for, over a row, which is then selected.
    std::function<void(const QPoint& global)> onMenu;
    /// A name was edited to another text. Called when the editor has gone.
    std::function<void(const Path& path, const QString& text)> onRename;

    void keyboardSearch(const QString& search) override;

  protected:
    void contextMenuEvent(QContextMenuEvent* event) override;
    bool viewportEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void updateEditorGeometries() override;

  private:
    void AskForMenu(const QPoint& inViewport);

    CDocListModel& m_model;
};

}  // namespace quillary
