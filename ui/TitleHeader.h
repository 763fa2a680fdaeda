// The painted header at the top of every dialog: its title over a line in the user's accent colour.
#pragma once

#include <QLabel>

namespace quillary {

class CTitleHeader : public QLabel {
  public:
    explicit CTitleHeader(const QString& title, QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace quillary
