// The fields of one record, each with its label and its editor, in a page that scrolls.
#pragma once

#include <QScrollArea>
#include <functional>
#include <string>
#include <vector>

#include "db/Clock.h"
#include "db/FieldType.h"
#include "db/Messages.h"
#include "db/UserLocale.h"
#include "views/RecordFormLayout.h"

namespace quillary {

class CQuillaryDoc;

inline constexpr int kFirstEditor = 100;  // the control id of the first field's editor; the others follow
inline constexpr int kFirstAction = 500;  // that of the first action button

class CEditRecordForm : public QScrollArea {
  public:
    /// `canDial`: phone numbers get a button that dials them.
    CEditRecordForm(CQuillaryDoc& doc, const Clock& clock, DateOrder order, bool canDial);
    ~CEditRecordForm() override;

    /// Called when typing is to begin in the first field.
    std::function<void()> onTypingBegins;
    /// Called when viewing has become editing.
    std::function<void()> onEditing;
    /// Called when a phone number, mail address or web address is to be acted on.
    std::function<void(FieldType type, const QString& text)> onAction;

    /// Loads the document's current record.
    void ShowRecord();
    /// Goes on with the current record after a commit; nothing that shows moves.
    void FollowRecord();
    /// Loads the values that a new record starts with. The form is then for editing.
    void ShowNewRecord();
    [[nodiscard]] bool IsNew() const { return m_isNew; }
    /// Whether the user has changed what was loaded.
    [[nodiscard]] bool IsChanged() const;
    /// What the field's editor shows, of a field that is edited in one line.
    [[nodiscard]] QString TextOf(std::size_t field) const;

    /// Stores what was entered: replaces the current record, or appends the new one, which then is the current one. On
    /// failure `control` is the editor whose text was refused, when it was one. `changed`: the document has.
    [[nodiscard]] bool Commit(bool& changed, Failure& failure, int& control);

    void FocusFirst();

    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void AddRow(std::size_t field, const Clock& clock, DateOrder order, bool canDial);
    /// The button that acts on the row's value; null for a type without one.
    [[nodiscard]] QToolButton* MakeAction(const CRecordEditor& editor, const QString& fieldName, bool canDial);
    void LayOut();
    void SetViewOnly(bool viewOnly);
    void PaintEditors();
    /// In a database that cannot be written, tells so instead.
    void BeginEditing();
    void Step(int direction);
    void MakeVisible();
    [[nodiscard]] int FocusedRow() const;
    [[nodiscard]] const RecordFormRow* RowOf(const QObject* widget) const;
    [[nodiscard]] bool CommitNew(Failure& failure, int& control);
    [[nodiscard]] bool CommitChanges(bool& changed, Failure& failure, int& control);
    [[nodiscard]] bool ActionTakes(const QEvent& event);
    [[nodiscard]] bool TakesKey(const CRecordEditor& editor, const QKeyEvent& event);

    CQuillaryDoc& m_doc;
    const Clock& m_clock;
    int m_nextAction = kFirstAction;
    std::vector<RecordFormRow> m_rows;  // one for each field; the widgets belong to the scrolled page
    std::vector<std::string> m_newValues;
    bool m_isNew = false;
    bool m_viewOnly = false;
};

}  // namespace quillary
