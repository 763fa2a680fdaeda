// The one road out of open dialogs: ends them, the innermost first, and does what comes next when the command handlers
// that had opened them have returned.
#pragma once

#include <QObject>
#include <functional>
#include <optional>

class QDialog;

namespace quillary {

class CUnwinding : public QObject {
  public:
    enum class Way {
        Cancel,  // ends everything with Cancel, message boxes too
        Save,    // ends changed dialogs with OK, others with Cancel; leaves message boxes to the user
    };
    struct Task {
        std::function<void()> run;
        std::function<void()> giveUp = [] {};  // called instead: a dialog refused OK, or another task came between
    };

    /// How to end what is open: when a dialog holds changes, as the user answers `question` (Save, Discard, Cancel).
    /// Nothing when that was Cancel, or when a dialog may not be left.
    [[nodiscard]] static std::optional<Way> AskForWay(QWidget* parent, const QString& question);

    CUnwinding();
    ~CUnwinding() override;

    /// Runs the task before it returns when no dialog is open. A task that still waits is given up.
    void Start(Way way, Task task);

    [[nodiscard]] bool IsWaiting() const { return m_waiting; }
    std::function<void()> whenEnded = [] {};  // behind what came next, or when a dialog has refused

    bool event(QEvent* event) override;

  private:
    void Step();
    /// False when the dialog did not take its end.
    [[nodiscard]] bool End(QDialog& dialog) const;

    Way m_way = Way::Cancel;
    Task m_task;
    bool m_waiting = false;  // a task is there
    unsigned m_started = 0;  // tells tasks apart
};

}  // namespace quillary
