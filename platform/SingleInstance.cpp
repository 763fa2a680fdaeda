#include "platform/SingleInstance.h"

#include <fcntl.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QCryptographicHash>
#include <QDeadlineTimer>
#include <QGuiApplication>
#include <QLocalSocket>
#include <QStandardPaths>
#include <QThread>
#include <QTimer>
#include <QtEndian>
#include <cerrno>
#include <optional>

#include "platform/NativePath.h"

namespace quillary {

namespace {

using std::chrono::milliseconds;

// A request is its length (four bytes, big-endian), the path, a NUL, and the token. The answer is one byte.
constexpr char kAcknowledged = 6;
constexpr int kLengthSize = 4;
constexpr milliseconds kPeerPatience{5000};  // for a peer that sends nothing, or not all
constexpr unsigned long kRetryMs = 20;
constexpr mode_t kPrivate = 0600;
constexpr mode_t kNoCleanUp = S_ISVTX;  // what has it may stay in the runtime folder for as long as it likes

int Descriptor(const QLocalSocket& socket) { return static_cast<int>(socket.socketDescriptor()); }

// The folder and the socket keep others out; this holds where somebody has opened them.
bool IsOwnUser(const QLocalSocket& socket) {
    ucred peer{};
    socklen_t size = sizeof peer;
    return getsockopt(Descriptor(socket), SOL_SOCKET, SO_PEERCRED, &peer, &size) == 0 && peer.uid == geteuid();
}

// A peer that has given up waiting starts on its own; its request would be a second opening of the same file.
bool IsStillThere(const QLocalSocket& socket) {
    char byte = 0;
    return recv(Descriptor(socket), &byte, 1, MSG_PEEK | MSG_DONTWAIT) < 0 && (errno == EAGAIN || errno == EWOULDBLOCK);
}

std::optional<LaunchRequest> Parse(const QByteArray& payload) {
    const auto end = payload.indexOf('\0');
    if (end < 0) return std::nullopt;
    return LaunchRequest{payload.left(end).toStdString(), payload.mid(end + 1).toStdString()};
}

int Remaining(const QDeadlineTimer& deadline) { return static_cast<int>(deadline.remainingTime()); }

// A window on another display cannot come to the front of this one.
QByteArray DisplayName() {
    const QString platform = QGuiApplication::platformName();
    const bool wayland = platform.startsWith(QStringLiteral("wayland"));
    return platform.toUtf8() + ' ' + qgetenv(wayland ? "WAYLAND_DISPLAY" : "DISPLAY");
}

// Short, as a socket's path may have no more than about a hundred characters.
std::string NameOf(const QString& program, const QByteArray& display) {
    const QByteArray hash = QCryptographicHash::hash(program.toUtf8() + '\0' + display, QCryptographicHash::Sha256);
    return "quillary-" + hash.left(8).toHex().toStdString();
}

}  // namespace

SingleInstance::SingleInstance()
    : m_folder(ToPath(QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation))),
      m_name(NameOf(QCoreApplication::applicationFilePath(), DisplayName())) {}

SingleInstance::Role SingleInstance::Start(const LaunchRequest& request, Receive receive) {
    m_receive = std::move(receive);
    if (m_folder.empty()) return Role::Alone;
    const QDeadlineTimer deadline(kPatience);
    while (!deadline.hasExpired()) {
        const Lock lock = TakeLock();
        if (lock == Lock::Impossible) return Role::Alone;
        if (lock == Lock::Taken) return Listen() ? Role::First : Role::Alone;
        if (Send(request, milliseconds(Remaining(deadline)))) return Role::HandedOver;
        QThread::msleep(kRetryMs);  // the first one has its lock, but does not listen yet, or is about to end
    }
    return Role::Alone;
}

// The kernel's lock goes with the process, however that ends. A lock file that names a process id would not do: another
// program, or one in another sandbox, can have the number of the one that was killed.
SingleInstance::Lock SingleInstance::TakeLock() {
    PosixFile file(open((m_folder / (m_name + ".lock")).c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, kPrivate));
    if (!file) return Lock::Impossible;
    FileError error;
    if (!LockOpenFile(file, LockKind::Exclusive, milliseconds(0), error)) return Lock::Others;
    (void)fchmod(file.Descriptor(), kPrivate | kNoCleanUp);
    m_lock = std::move(file);
    return Lock::Taken;
}

QString SingleInstance::SocketName() const { return FromPath(m_folder / m_name); }

bool SingleInstance::Listen() {
    QLocalServer::removeServer(SocketName());  // of one that was killed
    m_server.setSocketOptions(QLocalServer::UserAccessOption);
    QObject::connect(&m_server, &QLocalServer::newConnection, &m_server, [this] { Accept(); });
    if (!m_server.listen(SocketName())) {
        m_lock = PosixFile();
        return false;
    }
    (void)chmod((m_folder / m_name).c_str(), kPrivate | kNoCleanUp);
    return true;
}

void SingleInstance::Accept() {
    while (QLocalSocket* peer = m_server.nextPendingConnection()) {
        QObject::connect(peer, &QLocalSocket::disconnected, peer, &QObject::deleteLater);
        if (!IsOwnUser(*peer)) {
            peer->abort();
            continue;
        }
        peer->setReadBufferSize(kLengthSize + kMaxRequestSize);
        QObject::connect(peer, &QLocalSocket::readyRead, peer, [this, peer] { Read(*peer); });
        QTimer::singleShot(kPeerPatience, peer, [peer] { peer->abort(); });
        Read(*peer);
    }
}

void SingleInstance::Read(QLocalSocket& peer) {
    if (peer.bytesAvailable() < kLengthSize) return;
    const auto length = qFromBigEndian<quint32>(peer.peek(kLengthSize).constData());
    if (length > kMaxRequestSize) {
        peer.abort();
        return;
    }
    if (peer.bytesAvailable() < kLengthSize + qint64{length}) return;
    const auto request = Parse(peer.read(kLengthSize + qint64{length}).mid(kLengthSize));
    QObject::disconnect(&peer, &QLocalSocket::readyRead, nullptr, nullptr);  // one request a connection
    if (!request || !IsStillThere(peer)) {
        peer.abort();
        return;
    }
    peer.write(&kAcknowledged, 1);
    peer.flush();
    peer.disconnectFromServer();
    m_receive(*request);
}

bool SingleInstance::Send(const LaunchRequest& request, milliseconds patience) const {
    const std::string payload = request.path + '\0' + request.activationToken;
    if (payload.size() > kMaxRequestSize) return false;
    const QDeadlineTimer deadline(patience);
    QLocalSocket first;
    first.connectToServer(SocketName());
    if (!first.waitForConnected(Remaining(deadline)) || !IsOwnUser(first)) return false;
    QByteArray frame(kLengthSize, '\0');
    qToBigEndian(static_cast<quint32>(payload.size()), frame.data());
    frame.append(payload.data(), static_cast<qsizetype>(payload.size()));
    first.write(frame);
    while (first.bytesToWrite() > 0 && first.waitForBytesWritten(Remaining(deadline))) {
    }
    if (first.bytesAvailable() == 0 && !first.waitForReadyRead(Remaining(deadline))) return false;
    char answer = 0;
    return first.getChar(&answer) && answer == kAcknowledged;
}

}  // namespace quillary
