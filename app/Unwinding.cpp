#include "app/Unwinding.h"

#include <QApplication>
#include <QDialog>
#include <QMessageBox>
#include <QTimer>
#include <algorithm>
#include <utility>

#include "ui/MessageBox.h"
#include "ui/OpenDialog.h"
#include "ui/QuillaryDialog.h"
#include "ui/UserMessages.h"

namespace quillary {

namespace {

bool ClosePopups() {
    bool closed = false;
    for (QWidget* popup = QApplication::activePopupWidget(); popup && popup->close();
         popup = QApplication::activePopupWidget()) {
        closed = true;
    }
    return closed;
}

// Where the question of a request stands among the open dialogs. Of two requests the later one counts: a question that
// stands is answered with Cancel, so that one answer never undoes another.
class TheOneQuestion {
  public:
    TheOneQuestion() {
        const std::vector<QDialog*>& open = OpenDialog::All();
        if (s_place && *s_place < open.size()) open[*s_place]->reject();
        m_former = std::exchange(s_place, open.size());
    }
    ~TheOneQuestion() { s_place = m_former; }
    TheOneQuestion(const TheOneQuestion&) = delete;
    TheOneQuestion& operator=(const TheOneQuestion&) = delete;

  private:
    static inline std::optional<std::size_t> s_place;
    std::optional<std::size_t> m_former;
};

}  // namespace

std::optional<CUnwinding::Way> CUnwinding::AskForWay(QWidget* parent, const QString& question) {
    const TheOneQuestion one;
    const std::vector<QDialog*>& open = OpenDialog::All();
    for (QDialog* dialog : std::vector(open)) {
        auto* page = dynamic_cast<CQuillaryDialog*>(dialog);
        if (page && !page->MayBeLeft()) return std::nullopt;
    }
    const bool isChanged = std::any_of(open.begin(), open.end(), [](const QDialog* dialog) {
        const auto* page = dynamic_cast<const CQuillaryDialog*>(dialog);
        return page && page->IsChanged();
    });
    if (!isChanged) return Way::Cancel;
    // A message or a question that stands on the page goes, so that there is one at a time.
    for (auto top = open.rbegin(); top != open.rend() && qobject_cast<QMessageBox*>(*top); ++top) {
        if ((*top)->isVisible()) (*top)->reject();
    }
    enum Answer { Save, Discard };
    switch (AskUser(parent, question, {QStringLiteral("Save"), QStringLiteral("Discard"), QStringLiteral("Cancel")})) {
        case Save:
            return Way::Save;
        case Discard:
            return Way::Cancel;
        default:
            return std::nullopt;
    }
}

CUnwinding::CUnwinding() {
    OpenDialog::WhenOneEnds([this] {
        if (m_waiting) QCoreApplication::postEvent(this, new QEvent(kOpenFileMessage));
    });
}

CUnwinding::~CUnwinding() { OpenDialog::WhenOneEnds({}); }

void CUnwinding::Start(Way way, Task task) {
    ++m_started;
    m_way = way;
    const Task former = std::exchange(m_task, std::move(task));
    if (std::exchange(m_waiting, true)) former.giveUp();
    Step();
}

bool CUnwinding::event(QEvent* event) {
    if (event->type() != kOpenFileMessage) return QObject::event(event);
    Step();
    return true;
}

void CUnwinding::Step() {
    if (!m_waiting) return;
    if (ClosePopups()) {
        QTimer::singleShot(0, this, [this] { Step(); });  // a menu may have an event loop of its own
        return;
    }
    const unsigned started = m_started;
    if (!OpenDialog::All().empty()) {
        // A dialog that took its end comes back here through the message that its end posts.
        if (End(*OpenDialog::All().back()) || started != m_started) return;
    }
    m_waiting = false;
    const Task task = std::exchange(m_task, {});
    OpenDialog::All().empty() ? task.run() : task.giveUp();
    whenEnded();
}

bool CUnwinding::End(QDialog& dialog) const {
    if (dialog.isHidden()) return true;  // its end is on the way
    auto* page = dynamic_cast<CQuillaryDialog*>(&dialog);
    if (m_way == Way::Cancel || (page && !page->IsChanged())) {
        dialog.reject();
        return true;
    }
    if (!page) return true;
    page->accept();
    return page->isHidden();
}

}  // namespace quillary
