// Asks which fields give an appointment its day, its times and its text.
#pragma once

#include <cstddef>
#include <optional>

#include "integration/ExportCalendar.h"
#include "ui/QuillaryDialog.h"

class QComboBox;

namespace quillary {

class CPickList;

class CExportCalendarDlg : public CQuillaryDialog {
  public:
    /// For the record `row` alone, or for all that are shown.
    CExportCalendarDlg(const CQuillaryDoc& doc, std::optional<std::size_t> row, FrameWindow& frame);

    [[nodiscard]] const CalendarFields& Fields() const { return m_fields; }

    /// Nothing that a Cancel would lose.
    [[nodiscard]] bool IsChanged() const override { return false; }

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;

  private:
    CExportCalendarDlg(const CQuillaryDoc& doc, std::optional<std::size_t> row, QWidget* content, FrameWindow& frame);

    void Offer(QComboBox& list, FieldType type);

    const CQuillaryDoc& m_doc;
    const std::optional<std::size_t> m_row;
    QComboBox* m_date;
    QComboBox* m_start;
    QComboBox* m_end;
    CPickList* m_body;
    CalendarFields m_fields;
};

}  // namespace quillary
