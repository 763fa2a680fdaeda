// Asks what to search a catalogue for, and searches: OK ends it when something was found.
#pragma once

#include "ui/QuillaryDialog.h"

class QComboBox;

namespace quillary {

class AnsiText;
class CRemoteCatalog;
class CTextEdit;

class CRemoteSearchDlg : public CQuillaryDialog {
  public:
    struct Search {
        QString text;
        int category = 0;  // its position in the list
    };
    /// Begins with `search`. `page` is the catalogue's.
    CRemoteSearchDlg(CRemoteCatalog& catalog, const AnsiText& page, Search search, FrameWindow& frame);

    /// As it was when the dialog ended with OK.
    [[nodiscard]] const Search& Searched() const { return m_search; }

    /// Nothing that a Cancel would lose.
    [[nodiscard]] bool IsChanged() const override { return false; }
    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    void Load() override;
    [[nodiscard]] bool Commit() override;
    void FocusFirst() override;

  private:
    CRemoteSearchDlg(CRemoteCatalog& catalog, const AnsiText& page, Search search, FrameWindow& frame,
                     QWidget* content);

    CRemoteCatalog& m_catalog;
    const AnsiText& m_page;
    Search m_search;
    CTextEdit* m_text;
    QComboBox* m_category;
};

}  // namespace quillary
