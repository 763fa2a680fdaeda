// An editor of one line in which nothing can stand that shows as nothing.
#pragma once

#include <QLineEdit>

namespace quillary {

/// What is typed, pasted or dropped loses the line ends at its ends; every other control character in it becomes a
/// blank. A text that is set stays as it is.
class CLineEdit : public QLineEdit {
  public:
    explicit CLineEdit(QWidget* parent = nullptr);

  private:
    void Clean(const QString& edited);

    QString m_before;  // the text ahead of the change at hand
};

}  // namespace quillary
