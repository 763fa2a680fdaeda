// The help book in a window of its own, which stays open beside the program.
#pragma once

#include <QWidget>
#include <string_view>

class QLineEdit;
class QTextBrowser;

namespace quillary {

class CHelpBook : public QWidget {
  public:
    CHelpBook();

    /// Brings the book to the front, open at `topic`.
    void ShowTopic(std::string_view topic);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    /// Marks the next place that holds the text of the search line, from the top again behind the last one.
    void FindNext();

    QTextBrowser* m_page;
    QLineEdit* m_search;
};

}  // namespace quillary
