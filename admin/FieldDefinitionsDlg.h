// The field definitions editor: adds, removes, names, moves and retypes the fields of a table. All is pending until OK.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "admin/FieldEdit.h"
#include "ui/CommandActions.h"
#include "ui/CommandTarget.h"
#include "ui/QuillaryDialog.h"

class QToolBar;

namespace quillary {

class CRowListView;

class CFieldDefinitionsDlg : public CQuillaryDialog, public CommandMap<CFieldDefinitionsDlg> {
  public:
    /// Takes the definitions at OK; false, after telling why, keeps the dialog open.
    using Take = std::function<bool(std::vector<FieldDefinition> definitions)>;
    /// Without fields it begins with a new one, its name open for editing. `hasRecords`: the fields have values.
    CFieldDefinitionsDlg(std::vector<FieldEdit> fields, bool hasRecords, const AnsiText& page, Take take,
                         FrameWindow& frame);

    [[nodiscard]] bool IsChanged() const override;

    [[nodiscard]] static std::span<const CommandEntry<CFieldDefinitionsDlg>> Commands();

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;

  private:
    CFieldDefinitionsDlg(std::vector<FieldEdit> fields, bool hasRecords, const AnsiText& page, Take take,
                         FrameWindow& frame, QToolBar* bar, CRowListView* list);

    void OnInsert();
    void OnRemove();
    void OnMoveUp();
    void OnMoveDown();
    void UpdateSelected(CommandState& state) const;

    void OpenType(int row);
    [[nodiscard]] FieldEdit& EditOf(int row);
    [[nodiscard]] const FieldEdit& EditOf(int row) const;
    /// In the code page: as it was read while it is not changed.
    [[nodiscard]] std::optional<std::string> StoredName(int row, Failure& failure) const;
    /// What a Cancel would lose, as texts to compare.
    [[nodiscard]] QStringList State() const;

    std::vector<FieldEdit> m_edits;  // also of removed rows; a row's value is its index here
    const bool m_hasRecords;
    const AnsiText& m_page;
    const Take m_take;
    CRowListView* m_list;
    CCommandActions m_actions;
    QStringList m_loadedState;
};

/// For the open database. `store` applies and saves what OK has prepared; false, after telling why, and the editor
/// stays open. Asks before values get lost. `century` is where a year below 100 goes.
void RunFieldDefinitions(const CQuillaryDoc& doc, int century, FrameWindow& frame,
                         const std::function<bool(PreparedSchema)>& store);

/// For a database that is being created: the fields, or nullopt after Cancel. `fields` are those that it begins with,
/// for example of an earlier attempt.
[[nodiscard]] std::optional<std::vector<Field>> RunFieldDefinitions(std::vector<Field> fields, const AnsiText& page,
                                                                    FrameWindow& frame);

}  // namespace quillary
