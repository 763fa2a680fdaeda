// A line editor that is a link while it is read only: a click on its text follows it.
#pragma once

#include <functional>

#include "ui/LineEdit.h"

namespace quillary {

class CLinkEdit : public CLineEdit {
  public:
    explicit CLinkEdit(QWidget* parent = nullptr) : CLineEdit(parent) {}

    std::function<void()> onFollow;

    void SetReadOnly(bool readOnly);
    /// Whether there is text to follow at that place.
    [[nodiscard]] bool IsLinkAt(const QPoint& place) const;

  protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;

  private:
    bool m_pressed = false;  // on the text
};

}  // namespace quillary
