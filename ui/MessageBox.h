// Plain message boxes with exactly the text given: nothing in it is read as markup.
#pragma once

#include <QString>
#include <QStringList>
#include <string>

class QWidget;

namespace quillary {

/// With an OK button. `details`, when there are any, stand below the text.
void ShowMessage(QWidget* parent, const QString& text, const QString& details = {});
/// Below the text why, if that is known: UTF-8, a sentence that begins small and lacks its full stop.
void ShowMessageAndReason(QWidget* parent, const QString& text, const std::string& reason);

/// Which of `answers` the user chose; Escape and closing choose the last one, Return the default.
[[nodiscard]] int AskUser(QWidget* parent, const QString& text, const QStringList& answers, int defaultAnswer = 0);

}  // namespace quillary
