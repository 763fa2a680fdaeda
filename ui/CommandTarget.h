// Command routing: a class names the commands that it handles in a table, its message map, and the main window offers a
// command to one class after the other.
#pragma once

#include <QString>
#include <algorithm>
#include <span>
#include <utility>

namespace quillary {

/// What an update handler says about its command.
class CommandState {
  public:
    void Enable(bool on) { m_enabled = on; }
    /// `why` is told where the user meets the disabled command.
    void Disable(QString why) {
        m_enabled = false;
        m_whyNot = std::move(why);
    }
    [[nodiscard]] bool IsEnabled() const { return m_enabled; }
    [[nodiscard]] const QString& WhyNot() const { return m_whyNot; }

  private:
    bool m_enabled = true;
    QString m_whyNot;
};

class CommandTarget {
  public:
    virtual ~CommandTarget() = default;
    /// False when the command is none of this target's.
    virtual bool RunCommand(int id) = 0;
    virtual bool UpdateCommand(int id, CommandState& state) const = 0;
};

template <class T>
struct CommandEntry {
    int id;
    void (T::*run)();
    void (T::*update)(CommandState&) const = nullptr;  // none: always enabled
};

/// Routes by the table that `T::Commands()` returns. T derives from CommandMap<T>.
template <class T>
class CommandMap : public CommandTarget {
  public:
    bool RunCommand(int id) final {
        const CommandEntry<T>* entry = Find(id);
        if (entry) (static_cast<T*>(this)->*entry->run)();
        return entry != nullptr;
    }
    bool UpdateCommand(int id, CommandState& state) const final {
        const CommandEntry<T>* entry = Find(id);
        if (entry && entry->update) (static_cast<const T*>(this)->*entry->update)(state);
        return entry != nullptr;
    }

  private:
    [[nodiscard]] static const CommandEntry<T>* Find(int id) {
        const std::span<const CommandEntry<T>> commands = T::Commands();
        const auto found = std::find_if(commands.begin(), commands.end(), [id](const auto& e) { return e.id == id; });
        return found == commands.end() ? nullptr : &*found;
    }
};

}  // namespace quillary
