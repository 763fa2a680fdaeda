// The bar at the top of the main window: the menus at its left, the record counter at its right.
#pragma once

#include <QMenuBar>

class QLabel;

namespace quillary {

inline constexpr int kRecordCounter = 1039;

class CCommandBar : public QMenuBar {
  public:
    explicit CCommandBar(QWidget* parent = nullptr);

    /// The counter is only there while a database is open.
    void ShowCounter(bool show);
    void SetCounter(const QString& text);

  private:
    QLabel* m_counter;
};

}  // namespace quillary
