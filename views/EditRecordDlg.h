// The edit record form as a dialog: one record with all its fields, and the commands to go through the records, add,
// copy and delete them.
#pragma once

#include <vector>

#include "db/FieldType.h"
#include "integration/PersonalStore.h"
#include "ui/CommandActions.h"
#include "ui/CommandTarget.h"
#include "ui/QuillaryDialog.h"

namespace quillary {

class CDocumentSession;
class CEditRecordForm;
class CQuillaryDoc;
class Clock;
class Dialing;
class Launcher;
class Settings;
class UserLocale;

/// What the form and the exports ask about the user and the day, and what they hand things to. All outlive them.
struct FormSurroundings {
    const Clock& clock;
    const UserLocale& locale;
    const Settings& settings;
    Dialing& dialing;
    Launcher& launcher;
    const PersonalStoreFactory& makePersonalStore;
};

class CEditRecordDlg : public CQuillaryDialog, public CommandMap<CEditRecordDlg> {
  public:
    enum class Opening { CurrentRecord, NewRecord };
    CEditRecordDlg(CDocumentSession& session, const FormSurroundings& surroundings, Opening opening,
                   FrameWindow& frame);

    /// Whether the document has changed since the form was opened. What OK or Delete have done is not saved yet.
    [[nodiscard]] bool HasCommitted() const { return m_hasCommitted; }
    [[nodiscard]] bool IsChanged() const override;
    /// False, after telling the user, when the database is too full for `more` records.
    [[nodiscard]] static bool HasRoomFor(std::size_t more, const CQuillaryDoc& doc, FrameWindow& frame);

    bool eventFilter(QObject* watched, QEvent* event) override;

    [[nodiscard]] static std::span<const CommandEntry<CEditRecordDlg>> Commands();

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;

  private:
    CEditRecordDlg(CDocumentSession& session, const FormSurroundings& surroundings, Opening opening, FrameWindow& frame,
                   CEditRecordForm* form, QToolBar* bar);

    void OnDelete();
    void OnDial();
    void OnDuplicate();
    void OnExportCalendar();
    void OnNew();
    void OnNext();
    void OnPrevious();
    void OnSave();
    void Move(bool (CQuillaryDoc::*step)());
    template <int command>
    void Update(CommandState& state) const {
        SetState(command, state);
    }
    /// What all buttons depend on.
    void SetState(int command, CommandState& state) const;

    /// Commits, and saves what that changed.
    [[nodiscard]] bool CommitAndSave();
    /// What the value's button does, and a click on its link.
    void Act(FieldType type, const QString& text);
    /// Their positions, in their order.
    [[nodiscard]] std::vector<std::size_t> PhoneFields() const;
    void ShowRecord();
    void ShowNewRecord();
    /// The buttons, and the counter in the main window.
    void ShowState();

    CDocumentSession& m_session;
    CQuillaryDoc& m_doc;
    const FormSurroundings m_surroundings;
    const Opening m_opening;
    CEditRecordForm* m_form;
    CCommandActions m_actions;
    bool m_hasCommitted = false;
    bool m_clicked = false;  // in this page
    bool m_pressed = false;  // a key, in this page
};

}  // namespace quillary
