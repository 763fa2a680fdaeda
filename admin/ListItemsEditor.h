// The items of a List field, with the commands to add, delete, move and rename them.
#pragma once

#include <QWidget>
#include <optional>
#include <string>
#include <vector>

#include "db/Messages.h"
#include "ui/CommandActions.h"
#include "ui/CommandTarget.h"

class QMenu;

namespace quillary {

class AnsiText;
class CRowListView;

class CListItemsEditor : public QWidget, public CommandMap<CListItemsEditor> {
  public:
    explicit CListItemsEditor(const AnsiText& page);

    void SetItems(const std::vector<std::string>& items);
    /// Whether what was set has been changed.
    [[nodiscard]] bool IsChanged() const;
    /// Ends a pending renaming first. On failure `row` is the item that cannot be stored.
    [[nodiscard]] std::optional<std::vector<std::string>> Items(Failure& failure, int& row);
    void EditItem(int row);

    [[nodiscard]] static std::span<const CommandEntry<CListItemsEditor>> Commands();

  private:
    void OnAdd();
    void OnDelete();
    void OnMoveUp();
    void OnMoveDown();
    void OnRename();
    void UpdateSelected(CommandState& state) const;
    void BuildMenu();

    const AnsiText& m_page;
    CRowListView* m_list;
    CCommandActions m_actions;
    QMenu* m_menu;
    QStringList m_given;
};

}  // namespace quillary
