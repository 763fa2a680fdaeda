// Asks by which fields the records are to be sorted.
#pragma once

#include "db/QuerySettings.h"
#include "ui/QuillaryDialog.h"

namespace quillary {

class CQuillaryDoc;
class CSortKeysPage;

class CSortRecordsDlg : public CQuillaryDialog {
  public:
    CSortRecordsDlg(const CQuillaryDoc& doc, FrameWindow& frame);

    /// What the user chose, after OK: up to three keys, or none.
    [[nodiscard]] const SortSettings& Keys() const { return m_keys; }

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;

  private:
    CSortRecordsDlg(const CQuillaryDoc& doc, FrameWindow& frame, CSortKeysPage* page);

    SortSettings m_keys;
    CSortKeysPage* m_page;
};

}  // namespace quillary
