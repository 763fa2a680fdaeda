#include "app/Splash.h"

#include <QApplication>
#include <QPainter>
#include <QScreen>
#include <QTimer>

#include "ui/Icon.h"
#include "ui/StepLog.h"

namespace quillary {

namespace {

constexpr QSize kSize(360, 180);
constexpr int kIconSize = 96;
constexpr int kMargin = 28;
constexpr int kMilliseconds = 1500;
constexpr QColor kPaper(0xFD, 0xFD, 0xF8);
constexpr QColor kInk(0x37, 0x50, 0x6B);

}  // namespace

CSplash::CSplash(QWidget& mainWindow)
    : QWidget(nullptr, Qt::SplashScreen | Qt::FramelessWindowHint | Qt::WindowStaysOnTopHint),
      m_mainWindow(mainWindow) {
    setObjectName(QStringLiteral("131"));
    LogStep(QStringLiteral("splash"));
    setAttribute(Qt::WA_ShowWithoutActivating);
    setAttribute(Qt::WA_QuitOnClose, false);
    setFixedSize(kSize);
    move(screen()->availableGeometry().center() - rect().center());
    qApp->installEventFilter(this);
    QTimer::singleShot(kMilliseconds, this, [this] { Dismiss(); });
    show();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);  // so that it is seen before a file is read
}

bool CSplash::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::Paint:
            if (watched == &m_mainWindow) Dismiss();
            break;
        case QEvent::KeyPress:
        case QEvent::MouseButtonPress:
        case QEvent::TouchBegin:
            Dismiss();
            break;
        default:
            break;
    }
    return false;
}

void CSplash::Dismiss() {
    qApp->removeEventFilter(this);
    deleteLater();
    hide();
}

void CSplash::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.fillRect(rect(), kPaper);
    painter.setPen(QPen(kInk, 2));
    painter.drawRect(rect().adjusted(1, 1, -1, -1));
    ProgramIcon().paint(&painter, QRect(kMargin, (height() - kIconSize) / 2, kIconSize, kIconSize));
    const QRect text = rect().adjusted(2 * kMargin + kIconSize - kMargin / 2, 0, -kMargin, 0);
    QFont large = font();
    large.setPointSizeF(QFontInfo(large).pointSizeF() * 2.2);
    large.setBold(true);
    painter.setFont(large);
    painter.drawText(text.adjusted(0, 0, 0, -height() / 2), Qt::AlignLeft | Qt::AlignBottom,
                     QStringLiteral("Quillary"));
    painter.setFont(font());
    painter.drawText(text.adjusted(0, height() / 2 + 4, 0, 0), Qt::AlignLeft | Qt::AlignTop,
                     QStringLiteral("Version " QUILLARY_VERSION));
}

}  // namespace quillary
