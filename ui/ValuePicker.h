// What the date picker and the time picker have in common: a line of text that is read as a whole, arrows that step the
// part of it at the caret, and a check box for "no value".
#pragma once

#include <QWidget>
#include <cstdint>
#include <functional>
#include <optional>

class QAbstractSpinBox;
class QColor;

namespace quillary {

class CQLYButton;

/// The focus goes to the line. What is typed there stays as it is until the line is left or cleaned up; then it is
/// written anew, unless it cannot be read.
class CValuePicker : public QWidget {
  public:
    using Number = std::optional<std::int32_t>;

    /// Read only, it takes the focus but neither clicks, keys nor the wheel.
    void SetReadOnly(bool readOnly);
    /// Called after every change by the user.
    void WhenChanged(std::function<void()> changed) { m_changed = std::move(changed); }

    [[nodiscard]] bool IsEmpty() const;
    /// Not empty, and without a value.
    [[nodiscard]] bool IsUnreadable() const { return !IsEmpty() && !Value(); }
    /// What tells the user so.
    [[nodiscard]] QString WhyUnreadable() const;
    [[nodiscard]] QString Text() const;
    /// Writes the value that was typed as the picker itself writes it.
    void CleanUp();

    bool eventFilter(QObject* watched, QEvent* event) override;

  protected:
    enum class Arrows { Step, DropDown };
    /// `parts` has a letter for each character of a written value that belongs to a part, and the separators; an empty
    /// picker shows `emptyText`.
    CValuePicker(Arrows arrows, const QString& parts, const QString& emptyText, QWidget* parent);

    [[nodiscard]] Number Value() const { return Read(Text()); }
    void SetValue(Number value);
    /// The last one that was set or left.
    [[nodiscard]] Number LastValue() const { return m_last; }
    /// In a way that Undo takes back.
    void SetByUser(Number value);
    [[nodiscard]] QAbstractSpinBox& Editor() const;

    /// What a person types.
    [[nodiscard]] virtual Number Read(const QString& text) const = 0;
    /// What comes from another place, whole.
    [[nodiscard]] virtual Number ReadPasted(const QString& text) const { return Read(text); }
    [[nodiscard]] virtual QString Write(std::int32_t value) const = 0;
    [[nodiscard]] virtual QString RefusalOf(const QString& text) const = 0;
    /// The same without a doubt, where the written form leaves one.
    [[nodiscard]] virtual QString InWords(std::int32_t /*value*/) const { return {}; }
    /// What an empty picker starts with.
    [[nodiscard]] virtual std::int32_t Start() const = 0;
    /// nullopt beyond the ends of the range.
    [[nodiscard]] virtual Number Stepped(std::int32_t value, QChar part, int steps) const = 0;
    /// For the arrow, Alt+Down and F4.
    virtual void DropDown() {}

    /// Red that can be read on the colour of editors.
    [[nodiscard]] QColor Red() const;

    bool event(QEvent* event) override;

  private:
    class LineWithArrows;

    /// Before the line: true when it shall not get the key.
    [[nodiscard]] bool TakesKey(const QKeyEvent& event);
    [[nodiscard]] bool TakesPasted(const QString& pasted);
    void Step(int steps);
    void TextChanged();
    void MarkUnreadable(bool on);
    /// Why the text is marked.
    void TellWhy();
    void DescribeState();

    const QString m_parts;
    const QString m_emptyText;
    LineWithArrows* m_editor;
    CQLYButton* m_check;
    Number m_last;
    bool m_readOnly = false;
    bool m_setting = false;  // by the program
    bool m_marked = false;   // left with a text that cannot be read
    std::function<void()> m_changed;
};

}  // namespace quillary
