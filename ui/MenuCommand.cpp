#include "ui/MenuCommand.h"

#include <QAccessible>
#include <QMenu>
#include <QPointer>
#include <QWindow>

#include "ui/ToolTip.h"

namespace quillary {

namespace {

class MenuItemReader : public QAccessibleInterface, public QAccessibleActionInterface {
  public:
    explicit MenuItemReader(CMenuCommand& item) : m_item(&item) {}

    [[nodiscard]] bool isValid() const override { return !m_item.isNull(); }
    [[nodiscard]] QObject* object() const override { return m_item; }
    [[nodiscard]] QWindow* window() const override { return m_item ? m_item->Menu().windowHandle() : nullptr; }
    [[nodiscard]] QAccessibleInterface* parent() const override {
        return m_item ? QAccessible::queryAccessibleInterface(&m_item->Menu()) : nullptr;
    }
    [[nodiscard]] QAccessibleInterface* child(int /*index*/) const override { return nullptr; }
    [[nodiscard]] QAccessibleInterface* childAt(int /*x*/, int /*y*/) const override { return nullptr; }
    [[nodiscard]] int childCount() const override { return 0; }
    [[nodiscard]] int indexOfChild(const QAccessibleInterface* /*child*/) const override { return -1; }
    [[nodiscard]] QAccessible::Role role() const override { return QAccessible::MenuItem; }

    [[nodiscard]] QString text(QAccessible::Text kind) const override {
        if (!m_item) return {};
        if (kind == QAccessible::Name) return m_item->text().remove(u'&');
        if (kind == QAccessible::Description) return m_item->WhyNot();
        return kind == QAccessible::Accelerator ? m_item->shortcut().toString() : QString();
    }
    void setText(QAccessible::Text /*kind*/, const QString& /*text*/) override {}

    [[nodiscard]] QRect rect() const override {
        if (!m_item) return {};
        const QMenu& menu = m_item->Menu();
        return menu.actionGeometry(m_item).translated(menu.mapToGlobal(QPoint(0, 0)));
    }
    [[nodiscard]] QAccessible::State state() const override {
        QAccessible::State state;
        if (!m_item) return state;
        state.invisible = !m_item->Menu().isVisible();
        state.disabled = !m_item->isEnabled();
        state.focusable = m_item->isEnabled();
        state.focused = m_item->Menu().activeAction() == m_item;
        return state;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }
    [[nodiscard]] QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& name) override {
        if (name == pressAction()) QMetaObject::invokeMethod(m_item, &QAction::trigger, Qt::QueuedConnection);
    }
    [[nodiscard]] QStringList keyBindingsForAction(const QString& /*name*/) const override {
        return m_item ? QStringList{m_item->shortcut().toString()} : QStringList();
    }

  private:
    QPointer<CMenuCommand> m_item;
};

QAccessibleInterface* MakeReader(const QString& /*className*/, QObject* object) {
    auto* item = dynamic_cast<CMenuCommand*>(object);
    return item ? new MenuItemReader(*item) : nullptr;
}

}  // namespace

CMenuCommand::CMenuCommand(QMenu& menu, int command, const QString& text)
    : QAction(text, &menu), m_menu(menu), m_command(command) {
    QAccessible::installFactory(MakeReader);  // once, however often
}

void CMenuCommand::SetState(bool isEnabled, const QString& whyNot) {
    m_whyNot = whyNot;
    setEnabled(isEnabled);
    setToolTip(PlainToolTip(whyNot));
}

}  // namespace quillary
