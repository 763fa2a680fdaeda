// A text that looks and acts like a link: by mouse, by keyboard, and for a screen reader.
#pragma once

#include <QLabel>
#include <functional>

namespace quillary {

class CHyperlinkLabel : public QLabel {
  public:
    CHyperlinkLabel(const QString& text, const std::function<void()>& follow);
};

}  // namespace quillary
