// A command's place in a menu, as a screen reader meets it: the toolkit's own item cannot say why it is disabled, and
// pressed by a screen reader it would keep that waiting until the dialog that it opens has ended.
#pragma once

#include <QAction>

class QMenu;

namespace quillary {

class CMenuCommand : public QAction {
  public:
    CMenuCommand(QMenu& menu, int command, const QString& text);

    [[nodiscard]] int Command() const { return m_command; }
    [[nodiscard]] QMenu& Menu() const { return m_menu; }
    /// Empty when it is enabled.
    [[nodiscard]] const QString& WhyNot() const { return m_whyNot; }
    void SetState(bool isEnabled, const QString& whyNot);

  private:
    QMenu& m_menu;  // the parent
    const int m_command;
    QString m_whyNot;
};

}  // namespace quillary
