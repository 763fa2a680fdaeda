#include "catalogue-server/Deadlines.h"

#include <sys/socket.h>

#include <memory>

namespace quillary {

namespace {

constexpr std::chrono::milliseconds kBetweenLooks{250};

std::int64_t Now() { return std::chrono::steady_clock::now().time_since_epoch().count(); }

}  // namespace

void Deadlines::Connection::EndIn(Seconds time) {
    m_deadline = Now() + std::chrono::steady_clock::duration(time).count();
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

Deadlines::Connection* Deadlines::Add(int socket, Seconds time) {
    auto connection = std::make_unique<Connection>(socket);
    connection->EndIn(time);
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
            if (connection->m_deadline < now) shutdown(connection->m_socket, SHUT_RDWR);
        }
    }
}

}  // namespace quillary
