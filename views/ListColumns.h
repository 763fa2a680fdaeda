// The widths of the record list's columns: stored ones, dragged ones, one fitted to its widest text, and the filler.
#pragma once

namespace quillary {

class CDocumentSession;
class CQuillaryView;
class CRecordHeader;
class CRecordListModel;
class FrameWindow;

class CListColumns {
  public:
    CListColumns(CDocumentSession& session, CQuillaryView& view, CRecordHeader& header, CRecordListModel& model,
                 FrameWindow& frame)
        : m_session(session), m_view(view), m_header(header), m_model(model), m_frame(frame) {}

    /// Makes columns and rows anew, as wide as the document says.
    void Build();
    /// Widens the filler column to the client area's edge.
    void FitFiller();
    /// Widens or narrows a column to its widest text.
    void Fit(int column);
    /// Widens a column by so many letters, or narrows it.
    void Widen(int column, int letters);
    /// Saves the width that the column has.
    void StoreWidth(int column);

  private:
    CDocumentSession& m_session;
    CQuillaryView& m_view;
    CRecordHeader& m_header;
    CRecordListModel& m_model;
    FrameWindow& m_frame;
};

}  // namespace quillary
