// The preferences of the program: where new databases go, and how it looks and asks.
#pragma once

#include "admin/Preferences.h"
#include "ui/QuillaryDialog.h"

namespace quillary {

class CPreferencesDlg : public CQuillaryDialog {
  public:
    /// Reads from `settings`, and writes there at OK; stays open when that fails.
    CPreferencesDlg(Settings& settings, const StorageLocations& locations, FrameWindow& frame);
    /// What was stored, after OK.
    [[nodiscard]] const Preferences& Values() const { return m_preferences; }

    [[nodiscard]] bool IsChanged() const override;

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;

  private:
    Settings& m_settings;
    const StorageLocations& m_locations;
    Preferences m_preferences;
};

}  // namespace quillary
