#include "ui/LongWork.h"

#include <QElapsedTimer>
#include <QMessageBox>
#include <QPushButton>
#include <QTimer>

#include "ui/Captions.h"
#include "ui/OpenDialog.h"
#include "ui/WaitCursor.h"
#include "ui/WideText.h"

namespace quillary {

namespace {

constexpr qint64 kMillisecondsUnseen = 500;
constexpr qint64 kMillisecondsATurn = 30;  // between two looks at keys and clicks

bool WorkFor(qint64 milliseconds, const std::function<bool()>& step) {
    QElapsedTimer time;
    time.start();
    while (time.elapsed() < milliseconds) {
        if (step()) return true;
    }
    return false;
}

}  // namespace

bool RunLongWork(QWidget* parent, const QString& text, const std::function<bool()>& step) {
    const WaitCursor wait;
    if (WorkFor(kMillisecondsUnseen, step)) return true;

    QMessageBox box(parent);
    box.setWindowTitle(FromWide(Caption(kCaptionProgram)));
    box.setTextFormat(Qt::PlainText);
    box.setText(text);
    box.addButton(QStringLiteral("Cancel"), QMessageBox::RejectRole);
    QTimer turns;
    QObject::connect(&turns, &QTimer::timeout, &box, [&] {
        if (WorkFor(kMillisecondsATurn, step)) box.done(QDialog::Accepted);
    });
    turns.start();
    const OpenDialog open(box);
    (void)box.exec();
    return box.clickedButton() == nullptr && box.result() == QDialog::Accepted;
}

}  // namespace quillary
