// A text that looks and acts like a link: by mouse, by keyboard, and for a screen reader.
#pragma once

#include <QLabel>
#include <functional>

namespace quillary {

class CHyperlinkLabel : public QLabel {
  public:
    CHyperlinkLabel(const QString& text, std::function<void()> follow);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

  private:
    std::function<void()> m_follow;
};

}  // namespace quillary
