#include "ui/LongWork.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QKeyEvent>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <chrono>
#include <future>

#include "ui/Captions.h"
#include "ui/OpenDialog.h"
#include "ui/WaitCursor.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr qint64 kMillisecondsUnseen = 500;
constexpr qint64 kMillisecondsATurn = 30;  // between two looks at keys and clicks
constexpr int kMillisecondsAPause = 20;    // between two looks at another thread

bool WorkFor(qint64 milliseconds, const std::function<bool()>& step) {
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < milliseconds) {
        if (step()) return true;
    }
    return false;
}

// What a person has typed and clicked since the work began, before there was a box to take it: Escape stops the work,
// all else is dropped, as the box would drop it.
class EarlyInput : public QObject {
  public:
    [[nodiscard]] bool HasEscape() {
        QCoreApplication::instance()->installEventFilter(this);
        QCoreApplication::processEvents();
        QCoreApplication::instance()->removeEventFilter(this);
        return m_hasEscape;
    }

  protected:
    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
            case QEvent::KeyPress:
                if (static_cast<const QKeyEvent*>(event)->key() == Qt::Key_Escape) m_hasEscape = true;
                return true;
            case QEvent::KeyRelease:
            case QEvent::MouseButtonPress:
            case QEvent::MouseButtonRelease:
            case QEvent::MouseButtonDblClick:
            case QEvent::Wheel:
            case QEvent::TouchBegin:
            case QEvent::ShortcutOverride:
                return true;
            default:
                return false;
        }
    }

  private:
    bool m_hasEscape = false;
};

// Shows the box and takes turns, `pause` apart, until one answers true or the user stops it.
bool ShowWhileWorking(QWidget* parent, const std::function<QString()>& text, int pause,
                      const std::function<bool()>& turn) {
    QMessageBox box(parent);
    box.setWindowTitle(FromWide(Caption(kCaptionProgram)));
    box.setTextFormat(Qt::PlainText);
    box.setText(text());
    box.addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
    bool hasEnded = false;
    QObject::connect(&box, &QDialog::finished, &box, [&hasEnded] { hasEnded = true; });
    const OpenDialog open(box);
    if (EarlyInput().HasEscape() || hasEnded) return false;

    QTimer turns;
    QObject::connect(&turns, &QTimer::timeout, &box, [&] {
        if (turn()) {
            box.done(QDialog::Accepted);
        } else if (const QString now = text(); now != box.text()) {
            box.setText(now);
        }
    });
    turns.start(pause);
    (void)box.exec();
    return box.clickedButton() == nullptr && box.result() == QDialog::Accepted;
}

}  // namespace

bool RunLongWork(QWidget* parent, const QString& text, const std::function<bool()>& step) {
    const WaitCursor wait;
    if (WorkFor(kMillisecondsUnseen, step)) return true;
    return ShowWhileWorking(
        parent, [&text] { return text; }, 0, [&step] { return WorkFor(kMillisecondsATurn, step); });
}

bool WaitForWork(QWidget* parent, const std::function<QString()>& text, const std::function<bool()>& isDone) {
    const WaitCursor wait;
    const auto look = [&isDone] {
        if (isDone()) return true;
        QThread::msleep(1);
        return false;
    };
    if (WorkFor(kMillisecondsUnseen, look)) return true;
    return ShowWhileWorking(parent, text, kMillisecondsAPause, isDone);
}

bool RunOnThread(QWidget* parent, const QString& text, const std::function<void()>& work,
                 const std::function<void()>& stop) {
    std::future<void> end = std::async(std::launch::async, work);
    const auto isDone = [&end] { return end.wait_for(std::chrono::seconds(0)) == std::future_status::ready; };
    const bool isThrough = WaitForWork(
        parent, [&text] { return text; }, isDone);
    if (!isThrough) stop();
    end.get();
    return isThrough;
}

}  // namespace quillary
