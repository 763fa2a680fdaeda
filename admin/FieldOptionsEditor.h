// The options of a field: a pane for each type, of which that of the chosen type shows.
#pragma once

#include <QStackedWidget>

#include "admin/FieldEdit.h"
#include "db/Messages.h"

class QBoxLayout;
class QCheckBox;
class QComboBox;
class QVBoxLayout;

namespace quillary {

class AnsiText;
class CDigitsEdit;
class CListItemsEditor;

class CFieldOptionsEditor : public QStackedWidget {
  public:
    /// `converts`: the order in which texts are read as dates can be chosen.
    CFieldOptionsEditor(bool converts, const AnsiText& page);

    void Load(const FieldEdit& edit);
    void ShowPane(FieldType type);
    /// Whether an item of the list was changed; the other options are controls of the dialog.
    [[nodiscard]] bool AreItemsChanged() const;

    /// Puts the options of `type`, as they are set, into `edit`. On failure `item` is the one that cannot be stored.
    [[nodiscard]] bool Commit(FieldType type, FieldEdit& edit, Failure& failure, int& item);
    void EditItem(int item);

  private:
    [[nodiscard]] QVBoxLayout* AddPane(int id);
    [[nodiscard]] QCheckBox* AddCheckBox(QBoxLayout& pane, int id, const QString& text);
    [[nodiscard]] CDigitsEdit* AddNumber(QVBoxLayout& pane, int id, const QString& label);
    void AddDatePane(bool converts, const QString& today, const QString& convert);

    const AnsiText& m_page;
    QCheckBox* m_capitalize;
    CDigitsEdit* m_first;
    CDigitsEdit* m_increment;
    QCheckBox* m_checked;
    QCheckBox* m_today = nullptr;
    QCheckBox* m_convert = nullptr;
    QComboBox* m_convertFrom = nullptr;
    QCheckBox* m_now;
    CListItemsEditor* m_items;
};

}  // namespace quillary
