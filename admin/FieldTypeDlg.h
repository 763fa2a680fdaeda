// Chooses a field's type and sets the options of that type.
#pragma once

#include "admin/FieldEdit.h"
#include "ui/QuillaryDialog.h"

class QComboBox;

namespace quillary {

class AnsiText;
class CFieldOptionsEditor;

class CFieldTypeDlg : public CQuillaryDialog {
  public:
    /// `converts`: there are values, which another type converts. `edit` changes at OK.
    CFieldTypeDlg(FieldEdit& edit, bool converts, const AnsiText& page, FrameWindow& frame);

    [[nodiscard]] bool IsChanged() const override;

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;
    [[nodiscard]] std::string_view Topic() const override;

  private:
    CFieldTypeDlg(FieldEdit& edit, FrameWindow& frame, QComboBox* types, CFieldOptionsEditor* options);

    [[nodiscard]] FieldType ChosenType() const;

    FieldEdit& m_edit;
    QComboBox* m_types;
    CFieldOptionsEditor* m_options;
};

/// Whether the dialog ended with OK; `edit` has then changed.
[[nodiscard]] bool RunFieldType(FieldEdit& edit, bool converts, const AnsiText& page, FrameWindow& frame);

}  // namespace quillary
