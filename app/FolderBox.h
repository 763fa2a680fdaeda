// The choice of the folder whose databases the document list shows.
#pragma once

#include <QComboBox>
#include <optional>
#include <vector>

#include "app/DocListModel.h"

namespace quillary {

class CFolderBox : public QComboBox {
  public:
    /// With "All Folders" alone.
    CFolderBox();

    /// Offers these and keeps the chosen one. False when that is none of them any more: all folders are then chosen.
    [[nodiscard]] bool Fill(const std::vector<CDocListModel::Folder>& folders);
    /// nullopt: all folders.
    [[nodiscard]] std::optional<Path> Chosen() const;

  protected:
    /// Shows both ends of a folder that is too long for the box.
    void initStyleOption(QStyleOptionComboBox* option) const override;
};

}  // namespace quillary
