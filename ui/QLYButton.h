// The check button of the record form and of filters, with the same image as in the record list.
#pragma once

#include <QCheckBox>

namespace quillary {

class CQLYButton : public QCheckBox {
  public:
    explicit CQLYButton(QWidget* parent = nullptr);

    /// Read only, it takes the focus but neither clicks nor keys.
    void SetReadOnly(bool readOnly);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void nextCheckState() override;
    [[nodiscard]] bool hitButton(const QPoint& position) const override { return rect().contains(position); }
    void paintEvent(QPaintEvent* event) override;

  private:
    bool m_readOnly = false;
};

}  // namespace quillary
