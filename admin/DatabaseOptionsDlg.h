// The options that a database keeps for itself.
#pragma once

#include "ui/QuillaryDialog.h"

namespace quillary {

struct DatabaseOptions {
    bool longDates;     // March 07, 2004 instead of 03/07/2004
    bool editOnSelect;  // a tap in the list opens the record for editing
};

class CDatabaseOptionsDlg : public CQuillaryDialog {
  public:
    CDatabaseOptionsDlg(const DatabaseOptions& options, FrameWindow& frame);
    /// What the user chose, after OK.
    [[nodiscard]] const DatabaseOptions& Options() const { return m_options; }

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;

  private:
    DatabaseOptions m_options;
};

}  // namespace quillary
