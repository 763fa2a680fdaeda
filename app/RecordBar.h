// The bar below the menus while a database is open: buttons at its left, the record counter and "ok" at its right.
#pragma once

#include <QToolBar>

class QLabel;

namespace quillary {

class CCommandActions;

inline constexpr int kRecordCounter = 1039;

class CRecordBar : public QToolBar {
  public:
    CRecordBar(CCommandActions& actions, const std::function<void()>& ok);

    /// `hidden` records do not show, and do not count in `total`.
    void ShowCounter(int current, int total, int hidden);

  private:
    QLabel* m_counter;
};

}  // namespace quillary
