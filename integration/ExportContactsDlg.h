// Asks which fields give a contact its properties.
#pragma once

#include "integration/ExportContacts.h"
#include "ui/QuillaryDialog.h"

namespace quillary {

class CExportContactsPage;

class CExportContactsDlg : public CQuillaryDialog {
  public:
    CExportContactsDlg(const CQuillaryDoc& doc, FrameWindow& frame);

    [[nodiscard]] const ContactFields& Fields() const { return m_fields; }

    /// Nothing that a Cancel would lose.
    [[nodiscard]] bool IsChanged() const override { return false; }

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;

  private:
    CExportContactsDlg(CExportContactsPage* page, FrameWindow& frame);

    CExportContactsPage* m_page;
    ContactFields m_fields = NoContactFields();
};

}  // namespace quillary
