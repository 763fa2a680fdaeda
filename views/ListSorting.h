// Sorting as the record list offers it: the dialog, taps on the headings, and the mark of the heading by which it is
// sorted.
#pragma once

#include <string_view>

namespace quillary {

class CQuillaryDoc;
class CQuillaryView;
class CRecordHeader;
class FrameWindow;

class CListSorting {
  public:
    CListSorting(CQuillaryDoc& doc, CQuillaryView& view, CRecordHeader& header, FrameWindow& frame)
        : m_doc(doc), m_view(view), m_header(header), m_frame(frame) {}

    void OnSortRecords();
    /// Sorts by the field of that column alone: ascending, and the other way round when it is so already.
    void OnHeaderItemClick(int column);

    /// Marks the heading by whose field alone the records are sorted, unless the keys come from the dialog.
    void ShowSortMark();

  private:
    /// Rearranges the records by the stored keys and saves both; without a key the records stay where they are.
    void SortAndSave();
    /// The first column with exactly this heading (code page bytes), or -1.
    [[nodiscard]] int FindColumnByName(std::string_view name) const;
    /// Takes the mark from every heading but that of `column`; -1 means from all.
    void ClearHeaderSortMarks(int column);

    CQuillaryDoc& m_doc;
    CQuillaryView& m_view;
    CRecordHeader& m_header;
    FrameWindow& m_frame;
    bool m_marks = true;  // the keys are not those of the dialog
};

}  // namespace quillary
