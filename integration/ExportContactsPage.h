// The page of the contacts export: for each property of a contact, the field that gives it.
#pragma once

#include <QWidget>

#include "integration/ExportContacts.h"

class QComboBox;

namespace quillary {

class CExportContactsPage : public QWidget {
  public:
    explicit CExportContactsPage(const CQuillaryDoc& doc);

    /// Offers the fields, with None chosen everywhere.
    void Load();
    [[nodiscard]] ContactFields Fields() const;

  private:
    const CQuillaryDoc& m_doc;
    std::array<QComboBox*, kContactProperties> m_lists{};  // by ContactProperty
};

}  // namespace quillary
