// What the window shows while no database is open.
#pragma once

#include <QWidget>
#include <functional>

class QPushButton;

namespace quillary {

class CStartPage : public QWidget {
  public:
    explicit CStartPage(const std::function<void()>& open);

  private:
    QPushButton* m_open;
};

}  // namespace quillary
