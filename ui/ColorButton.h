// A button that shows a colour and opens the colour picker to change it.
#pragma once

#include <QColor>
#include <QPushButton>

namespace quillary {

class CColorButton : public QPushButton {
  public:
    /// `label` is what the colour is for: a screen reader says it before the colour.
    explicit CColorButton(QString label, QWidget* parent = nullptr);

    [[nodiscard]] QColor Color() const { return m_color; }
    void SetColor(const QColor& color);

  private:
    void Pick();

    QString m_label;
    QColor m_color;
};

}  // namespace quillary
