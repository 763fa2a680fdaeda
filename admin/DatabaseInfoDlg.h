// Shows the info text of a database, to be edited unless it is locked, and locks and unlocks it.
#pragma once

#include <cstdint>
#include <string>

#include "ui/QuillaryDialog.h"

class QPushButton;

namespace quillary {

class CQuillaryDoc;
class CTextEdit;

class CDatabaseInfoDlg : public CQuillaryDialog {
  public:
    CDatabaseInfoDlg(const CQuillaryDoc& doc, FrameWindow& frame);

    /// After OK: the text in the file's code page, byte for byte the database's if the user has not changed it.
    [[nodiscard]] const std::string& Text() const { return m_text; }
    /// After OK: the lock of the text, 0 for none.
    [[nodiscard]] std::int32_t Lock() const { return m_lock; }
    [[nodiscard]] bool IsChanged() const override;

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;

  private:
    CDatabaseInfoDlg(const CQuillaryDoc& doc, FrameWindow& frame, QWidget* bar, CTextEdit* edit);
    [[nodiscard]] bool IsTextChanged() const;
    void AskForLockPassword();
    /// Whether the text can be edited, and the one button that there is.
    void ShowLock();

    const CQuillaryDoc& m_doc;
    CTextEdit* m_edit;
    QPushButton* m_unlockButton;
    QPushButton* m_lockButton;
    QString m_loaded;
    std::string m_text;
    std::int32_t m_lock;
};

}  // namespace quillary
