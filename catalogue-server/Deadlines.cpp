#include "catalogue-server/Deadlines.h"

#include <linux/sockios.h>
#include <linux/tcp.h>
#include <netinet/in.h>
#include <sys/ioctl.h>
#include <sys/socket.h>

#include <memory>

namespace quillary {

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{250};

std::int64_t Now() { return std::chrono::steady_clock::now().time_since_epoch().count(); }

std::uint64_t BytesTaken(int socket) {
    tcp_info info{};
    socklen_t size = sizeof info;
    return getsockopt(socket, IPPROTO_TCP, TCP_INFO, &info, &size) == 0 ? info.tcpi_bytes_acked : 0;
}

}  // namespace

void Deadlines::Connection::EndIn(Seconds time) {
    const std::int64_t now = Now();
    m_silentSince = now;
    m_deadline = now + std::chrono::steady_clock::duration(time).count();
}

std::uint64_t Deadlines::Connection::BytesUnderWay() const {
    int bytes = 0;
    return ioctl(m_socket, SIOCOUTQ, &bytes) == 0 && bytes > 0 ? static_cast<std::uint64_t>(bytes) : 0;
}

bool Deadlines::Connection::IsOver(std::int64_t now) {
    if (const std::uint64_t taken = BytesTaken(m_socket); taken != m_bytesTaken) {
        m_bytesTaken = taken;
        m_silentSince = now;
    }
    return m_deadline < now || m_silentSince + m_silence.count() < now;
}

Deadlines::Deadlines() : m_thread([this] { Watch(); }) {}

Deadlines::~Deadlines() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_stopping = true;
    }
    m_stop.notify_one();
    m_thread.join();
    for (Connection* connection : m_connections) delete connection;
}

Deadlines::Connection* Deadlines::Add(int socket, Seconds patience) {
    auto connection = std::make_unique<Connection>(socket, patience);
    connection->EndIn(patience);
    const std::lock_guard<std::mutex> lock(m_mutex);
    connection->m_place = m_connections.insert(m_connections.end(), connection.get());
    return connection.release();
}

void Deadlines::Remove(Connection* connection) {
    const std::unique_ptr<Connection> owned(connection);
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_connections.erase(connection->m_place);
}

void Deadlines::Watch() {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (!m_stop.wait_for(lock, kBetweenLooks, [this] { return m_stopping; })) {
        const std::int64_t now = Now();
        for (Connection* connection : m_connections) {
            if (connection->IsOver(now)) shutdown(connection->m_socket, SHUT_RDWR);
        }
    }
}

}  // namespace quillary
