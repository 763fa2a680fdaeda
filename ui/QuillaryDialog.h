// The base of all dialogs: a page in the main window with a title header, controls from a table, OK and Cancel.
#pragma once

#include <QDialog>
#include <QVariant>
#include <functional>
#include <string_view>

#include "ui/ControlInfo.h"

class QVBoxLayout;

namespace quillary {

class FrameWindow;

/// A derived class gives its table of controls, loads them and commits them. It lives on the stack of the command
/// handler: `if (dialog.exec() == QDialog::Accepted) ...`.
class CQuillaryDialog : public QDialog {
  public:
    CQuillaryDialog(const DialogInfo& info, FrameWindow& frame);
    /// Without a table of controls: `content` has them.
    CQuillaryDialog(const DialogInfo& info, QWidget& content, FrameWindow& frame);
    /// The same, where `bar`, if there is one, stands below the header, and `body` fills the page and scrolls by
    /// itself.
    CQuillaryDialog(const DialogInfo& info, QWidget* bar, QWidget& body, FrameWindow& frame);

    ~CQuillaryDialog() override;

    /// With OK, once the controls are committed, `store` keeps what they hold; false, after telling why, and the page
    /// stays open with everything in it.
    void StoreWith(std::function<bool()> store) { m_store = std::move(store); }
    /// Shows the page and returns when it has ended.
    int exec() override;
    /// OK: ends the dialog when Commit allows it.
    void accept() override;
    /// The page's one end; being covered by another dialog's page is none.
    void done(int result) override;
    void setVisible(bool visible) override;

    /// Whether it holds what a Cancel would lose: a control shows another value than the one it was loaded with.
    [[nodiscard]] virtual bool IsChanged() const { return ControlValues() != m_loaded; }

    /// Asked before the window, on its way to close, ends the page: false when the user says no.
    [[nodiscard]] virtual bool MayBeLeft() { return true; }

    /// The widget of the control `id`; null when the dialog has none of that number and type.
    template <class T>
    [[nodiscard]] T* Control(int id) const {
        return findChild<T*>(QString::number(id));
    }

    /// How wide a page's content gets on a wide screen.
    [[nodiscard]] static int ComfortableWidth(const QFontMetrics& metrics);

  protected:
    /// Puts the values into the controls, before the page shows.
    virtual void Load() {}
    /// Takes the values out of the controls. False keeps the dialog open as it is.
    [[nodiscard]] virtual bool Commit() { return true; }
    /// For Commit: tells why it does not go on and puts the focus into that control. Returns false.
    [[nodiscard]] bool Refuse(int control, const QString& why);

    /// The control in which a person begins: the first one of the table.
    virtual void FocusFirst();
    /// The input panel is there while an editor of this page has the focus.
    void FollowFocus(const QWidget* now);
    void RaisePanel();

    void keyPressEvent(QKeyEvent* event) override;

    /// What F1 and the Help button open.
    [[nodiscard]] virtual std::string_view Topic() const { return m_topic; }

    /// A body of comfortable width in the middle of the page, as high as the page allows.
    [[nodiscard]] static QWidget& Centered(QWidget& content);
    /// The same, and it scrolls where the page is too small for it.
    [[nodiscard]] static QWidget& Scrolled(QWidget& content);
    /// The same, no higher than the content, so that the buttons stand right below it.
    [[nodiscard]] static QWidget& Short(QWidget& content);

    [[nodiscard]] FrameWindow& Frame() const { return m_frame; }

  private:
    void SetUp(const DialogInfo& info);
    /// The page's column, with its header; it scrolls where the page is too small for it.
    [[nodiscard]] QVBoxLayout* BeginScrolledColumn(const DialogInfo& info);
    void EndScrolledColumn(QVBoxLayout& column, Buttons buttons);
    [[nodiscard]] static QVBoxLayout* MakeColumn(QWidget& content);
    void AddHeader(QVBoxLayout& column);
    [[nodiscard]] QWidget* MakeButtons(Buttons buttons);
    void ShowHelp();
    void ScrollIntoSight(const QWidget& control) const;

    [[nodiscard]] QVariantList ControlValues() const;

    FrameWindow& m_frame;
    std::function<bool()> m_store;
    std::string_view m_topic;
    std::span<const ControlInfo> m_controls;
    bool m_panelShown = false;
    QVariantList m_loaded;
    bool m_ends = false;
};

}  // namespace quillary
