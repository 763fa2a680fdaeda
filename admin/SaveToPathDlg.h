// Asks for the folder into which downloaded files go.
#pragma once

#include "admin/SavePath.h"
#include "ui/QuillaryDialog.h"

namespace quillary {

class CSaveToPathDlg : public CQuillaryDialog {
  public:
    CSaveToPathDlg(const StorageLocations& locations, FrameWindow& frame);
    /// After OK: the folder, ending in a separator.
    [[nodiscard]] const std::string& ResultPath() const { return m_path; }

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;

  private:
    void FillFolders();
    void ShowPath();
    [[nodiscard]] std::string ChosenPath() const;

    const StorageLocations& m_locations;
    std::vector<SaveLocation> m_bases;
    std::vector<std::string> m_folders;  // of the location that is chosen
    std::string m_path;
};

}  // namespace quillary
