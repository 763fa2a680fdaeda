// A label that breaks a word too long for its line, a path for example, wherever the line ends; its text stays as it
// is.
#pragma once

#include <QLabel>

namespace quillary {

class CWrappingLabel : public QLabel {
  public:
    explicit CWrappingLabel(const QString& text = {});

    /// How wide its longest line is, at most `most` pixels.
    [[nodiscard]] int NaturalWidth(int most) const;

    [[nodiscard]] int heightForWidth(int width) const override;
    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillary
