// Sets the conditions that records must meet to be shown.
#pragma once

#include <QStringList>

#include "db/QuerySettings.h"
#include "db/UserLocale.h"
#include "ui/QuillaryDialog.h"

namespace quillary {

class CFilterConditionsPage;
class CQuillaryDoc;
class Clock;

class CFilterRecordsDlg : public CQuillaryDialog {
  public:
    /// `order` is how the user writes dates.
    CFilterRecordsDlg(const CQuillaryDoc& doc, const Clock& clock, DateOrder order, FrameWindow& frame);

    [[nodiscard]] const FilterSettings& Settings() const { return m_settings; }
    [[nodiscard]] bool IsChanged() const override;

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;

  private:
    CFilterRecordsDlg(CFilterConditionsPage* page, FrameWindow& frame);

    CFilterConditionsPage* m_page;
    QStringList m_loadedState;
    FilterSettings m_settings;
};

}  // namespace quillary
