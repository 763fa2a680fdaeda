#include "ui/LongWork.h"

#include <QElapsedTimer>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>
#include <QTimer>

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

// Shows the box and takes turns, `pause` apart, until one answers true or the user stops it.
bool ShowWhileWorking(QWidget* parent, const std::function<QString()>& text, int pause,
                      const std::function<bool()>& turn) {
    QMessageBox box(parent);
    box.setWindowTitle(FromWide(Caption(kCaptionProgram)));
    box.setTextFormat(Qt::PlainText);
    box.setText(text());
    box.addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
    QTimer turns;
    QObject::connect(&turns, &QTimer::timeout, &box, [&] {
        if (turn()) {
            box.done(QDialog::Accepted);
        } else if (const QString now = text(); now != box.text()) {
            box.setText(now);
        }
    });
    turns.start(pause);
    const OpenDialog open(box);
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

}  // namespace quillary
