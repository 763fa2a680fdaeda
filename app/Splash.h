// The picture that shows while the program starts. It waits for nothing: it goes with the first paint of the main
// window, with any input, and after a moment in any case.
#pragma once

#include <QWidget>

namespace quillary {

class CSplash : public QWidget {
  public:
    explicit CSplash(QWidget& mainWindow);

    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    void Dismiss();

    QWidget& m_mainWindow;
};

}  // namespace quillary
