// An edit box for a whole number with a spin control beside it.
#pragma once

#include <QAbstractSpinBox>

namespace quillary {

/// The spin control stays within its range; what is typed is not corrected, so that the dialog can say what is wrong.
class CSpinEdit : public QAbstractSpinBox {
  public:
    explicit CSpinEdit(QWidget* parent = nullptr);

    void SetRange(int least, int most);
    [[nodiscard]] QLineEdit& Edit() const { return *lineEdit(); }

    void stepBy(int steps) override;

  protected:
    [[nodiscard]] StepEnabled stepEnabled() const override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    [[nodiscard]] int Value() const;

    int m_least = 0;
    int m_most = 0;
};

}  // namespace quillary
