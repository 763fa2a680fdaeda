// A user's hand for tests of the whole window program, which loads this as a plugin: does with real events what each
// line of standard input says, also while a dialog waits, and tells on standard output what the window shows.
#include <unistd.h>

#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QFileDialog>
#include <QGenericPlugin>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QKeySequence>
#include <QLabel>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QSocketNotifier>
#include <QTest>
#include <QTimer>
#include <cstdio>
#include <cstdlib>

namespace {

QMainWindow* Frame() {
    for (QWidget* widget : QApplication::topLevelWidgets()) {
        if (auto* frame = qobject_cast<QMainWindow*>(widget)) return frame;
    }
    return nullptr;
}

QString Caption(const QAbstractButton* button) { return button->text().remove(u'&'); }

// What the user is to answer, else the window.
QWidget* InFront() { return QApplication::activeModalWidget() ? QApplication::activeModalWidget() : Frame(); }

QWidget* Focus() {
    QWidget* focus = InFront()->focusWidget();
    return focus ? focus : InFront();
}

QJsonObject Look() {
    const QMainWindow* frame = Frame();
    const auto* counter = frame->findChild<QLabel*>(QStringLiteral("1039"));
    QJsonObject seen{{"title", frame->windowTitle()},
                     {"counter", counter && counter->isVisible() ? counter->text() : QString()}};
    if (const auto* box = qobject_cast<QMessageBox*>(InFront())) {
        QJsonArray buttons;
        for (const QAbstractButton* button : box->buttons()) buttons << Caption(button);
        seen["message"] = box->text();
        seen["buttons"] = buttons;
    }
    return seen;
}

void Press(const QString& caption) {
    for (auto* button : InFront()->findChildren<QAbstractButton*>()) {
        if (!button->isVisible() || Caption(button) != caption) continue;
        QTest::mouseClick(button, Qt::LeftButton);
        return;
    }
}

void Obey(const QString& line) {
    const QString verb = line.section(u' ', 0, 0);
    const QString object = line.section(u' ', 1);
    if (verb == QStringLiteral("key")) {
        const QKeyCombination key = QKeySequence(object)[0];
        QTest::keyClick(Focus(), key.key(), key.keyboardModifiers());
    } else if (verb == QStringLiteral("paste")) {
        QGuiApplication::clipboard()->setText(object);
        QTest::keyClick(Focus(), Qt::Key_V, Qt::ControlModifier);
    } else if (verb == QStringLiteral("press")) {
        Press(object);
    } else if (verb == QStringLiteral("name")) {
        InFront()->findChild<QLineEdit*>()->setText(object);  // in a file chooser: typing opens the completer's window
    } else {
        std::puts(QJsonDocument(Look()).toJson(QJsonDocument::Compact).constData());
        std::fflush(stdout);
    }
}

class Hand : public QObject {
  public:
    Hand() : m_input(STDIN_FILENO, QSocketNotifier::Read) {
        connect(&m_input, &QSocketNotifier::activated, this, [this] { Take(); });
    }

  private:
    void Take() {
        char bytes[4096];
        const ssize_t count = read(STDIN_FILENO, bytes, sizeof bytes);
        if (count <= 0) std::_Exit(1);  // who gave the commands was killed
        m_taken.append(bytes, static_cast<int>(count));
        if (!m_isWaiting) DoNext();
    }
    void DoNext() {
        const auto end = m_taken.indexOf('\n');
        m_isWaiting = end >= 0;
        if (!m_isWaiting) return;
        // Before this command, which may not return until a later one has ended its dialog.
        QTimer::singleShot(0, this, [this] { DoNext(); });
        if (!Frame()) return;
        QApplication::setActiveWindow(InFront());  // as a window manager does
        const QString line = QString::fromUtf8(m_taken.left(end));
        m_taken.remove(0, end + 1);
        Obey(line);
    }

    QSocketNotifier m_input;
    QByteArray m_taken;
    bool m_isWaiting = false;
};

class HandPlugin : public QGenericPlugin {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "Hand.json")

  public:
    QObject* create(const QString&, const QString&) override { return new Hand; }
};

}  // namespace

#include "Hand.moc"
