// What the date picker and the time picker have in common: an editor in sections, and a check box for "no value".
#pragma once

#include <QDateTimeEdit>
#include <QWidget>
#include <functional>
#include <optional>

namespace quillary {

class CQLYButton;

/// The focus goes to the editor. Typing, stepping or pasting into an empty picker gives it a value; so does the check
/// box, and takes it away.
class CValuePicker : public QWidget {
  public:
    /// Read only, it takes the focus but neither clicks, keys nor the wheel.
    void SetReadOnly(bool readOnly);
    /// Called after every change by the user.
    void WhenChanged(std::function<void()> changed) { m_changed = std::move(changed); }

    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    /// `format` in the toolkit's letters; an empty picker shows `emptyText`.
    CValuePicker(const QString& format, const QString& emptyText, QWidget* parent);

    [[nodiscard]] QDateTimeEdit& Editor() const;
    /// What is typed counts as far as it can be read, also before the focus leaves. In UTC.
    [[nodiscard]] std::optional<QDateTime> Value() const;
    void SetValue(const std::optional<QDateTime>& value);
    void SetByUser(const std::optional<QDateTime>& value);
    [[nodiscard]] bool IsEmpty() const { return m_empty; }
    [[nodiscard]] bool IsReadOnly() const { return m_readOnly; }

    /// What an empty picker starts with.
    [[nodiscard]] virtual QDateTime Start() const = 0;
    /// A text that was pasted, or is not finished.
    [[nodiscard]] virtual std::optional<QDateTime> Read(const QString& text) const = 0;

    using Section = QDateTimeEdit::Section;
    /// The largest number to type into a section; 0 leaves it to the toolkit, whose own reading of digits depends on
    /// the other sections: it takes no 31 while the month is still February.
    [[nodiscard]] virtual int MostTyped(Section section) const = 0;
    /// The value with a number of one or two digits, so far, typed into a section; nullopt when it says nothing yet.
    [[nodiscard]] virtual std::optional<QDateTime> WithTyped(Section section, int number, int digits) = 0;
    /// The value with a letter typed; nullopt when none belongs there.
    [[nodiscard]] virtual std::optional<QDateTime> WithLetter(QChar /*letter*/) const { return std::nullopt; }
    /// What the toolkit made of what was typed, with what was typed before.
    [[nodiscard]] virtual QDateTime Completed(const QDateTime& value) const { return value; }
    /// What was typed before counts no more.
    virtual void TypingEnded() { m_section = -1; }

    bool event(QEvent* event) override;

  private:
    class SectionEdit;

    /// Before the editor: true when it shall not get the key.
    [[nodiscard]] bool TakesKey(QKeyEvent& event);
    [[nodiscard]] bool TakesTyped(QChar typed);
    void SelectSection(int index);
    void EditorChanged();

    SectionEdit* m_editor;
    CQLYButton* m_check;
    QString m_emptyText;
    bool m_empty = true;
    bool m_readOnly = false;
    bool m_setting = false;  // by the program
    int m_section = -1;      // typed into last; the toolkit may have gone on to the next
    int m_number = 0;        // typed there, in m_digits digits
    int m_digits = 0;
    std::function<void()> m_changed;
};

}  // namespace quillary
