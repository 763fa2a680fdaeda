// The name of a field beside its editor: wraps between words, and inside a word that is wider than the label.
#pragma once

#include <QLabel>

namespace quillary {

class CFieldLabel : public QLabel {
  public:
    /// `editor` is what a screen reader takes the label to belong to.
    CFieldLabel(const QString& name, QWidget& editor, QWidget* parent);

    [[nodiscard]] int NaturalWidth() const;
    [[nodiscard]] int HeightFor(int width) const;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    [[nodiscard]] int Flags(int width) const;

    QString m_name;
};

}  // namespace quillary
