// A drop-down list whose first entry is empty.
#pragma once

#include <QComboBox>

namespace quillary {

class CQLYComboBox : public QComboBox {
  public:
    explicit CQLYComboBox(QWidget* parent = nullptr);

    /// The entries are the empty one and then these; the empty one is selected.
    void SetItems(const QStringList& items);
    /// A text that is no item becomes an extra entry at the end, until another one is selected here.
    void Select(const QString& text);
    /// Read only, it takes the focus but neither clicks, keys nor the wheel.
    void SetReadOnly(bool readOnly);

    void showPopup() override;

  protected:
    void initStyleOption(QStyleOptionComboBox* option) const override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    int m_entries = 0;  // without an extra one
    bool m_readOnly = false;
};

}  // namespace quillary
