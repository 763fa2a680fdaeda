// The colour picker: a table of colours and an edit box for any other, over the page below the button that opens it. No
// window of its own: a screen reader does not look into those that close by a click elsewhere.
#pragma once

#include <QColor>
#include <QFrame>
#include <functional>

class QLineEdit;
class QTableWidget;

namespace quillary {

class CColorPicker : public QFrame {
  public:
    /// Shows `color` as the one that is chosen, beside or on `button`, where `page` has room for it. Closes when the
    /// user goes elsewhere, and then deletes itself.
    CColorPicker(const QColor& color, QWidget& button, QWidget& page);

    /// Called with what the user picked; never when the picker was left without.
    std::function<void(const QColor&)> onPicked;

    /// What a person calls a colour of the table, for example "Light blue"; empty for any other.
    [[nodiscard]] static QString ColorName(const QColor& color);

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

  private:
    void FillTable(const QColor& color);
    void Place();
    void Leave();
    void Pick(const QColor& color);
    void PickTyped();

    QWidget& m_button;
    QTableWidget* m_table;
    QLineEdit* m_other;
};

}  // namespace quillary
