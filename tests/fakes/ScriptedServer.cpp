#include "tests/fakes/ScriptedServer.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <chrono>
#include <stdexcept>

namespace quillary {

namespace {

constexpr int kTurnMilliseconds = 20;

bool CanRead(int socket, int milliseconds) {
    struct pollfd one {
        socket, POLLIN, 0
    };
    return poll(&one, 1, milliseconds) > 0;
}

}  // namespace

ScriptedServer::ScriptedServer(Script script) : m_script(std::move(script)) {
    m_listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    struct sockaddr_in address {};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* generic = reinterpret_cast<struct sockaddr*>(&address);
    if (bind(m_listener, generic, size) != 0 || listen(m_listener, 64) != 0 ||
        getsockname(m_listener, generic, &size) != 0) {
        throw std::runtime_error("no port to listen on");
    }
    m_port = ntohs(address.sin_port);
    m_thread = std::thread([this] { Run(); });
}

ScriptedServer::~ScriptedServer() {
    m_ends = true;
    m_thread.join();
    close(m_listener);
}

std::string ScriptedServer::Address() const { return "127.0.0.1:" + std::to_string(m_port); }

std::vector<std::string> ScriptedServer::Requests() {
    const std::lock_guard lock(m_mutex);
    return m_requests;
}

std::string ScriptedServer::LastHead() {
    const std::lock_guard lock(m_mutex);
    return m_lastHead;
}

std::string ScriptedServer::Ok(const std::string& body) {
    return "HTTP/1.1 200 OK\r\nContent-Length: " + std::to_string(body.size()) + "\r\n\r\n" + body;
}

void ScriptedServer::Run() {
    while (!m_ends) {
        if (!CanRead(m_listener, kTurnMilliseconds)) continue;
        const int client = accept4(m_listener, nullptr, nullptr, SOCK_CLOEXEC);
        if (client >= 0) m_clients.emplace_back([this, client] { Serve(client); });
    }
    for (std::thread& client : m_clients) client.join();
}

void ScriptedServer::Serve(int client) {
    std::string head;
    char piece[4096];
    while (!m_ends && head.find("\r\n\r\n") == std::string::npos) {
        if (!CanRead(client, kTurnMilliseconds)) continue;
        const auto size = recv(client, piece, sizeof piece, 0);
        if (size <= 0) break;
        head.append(piece, static_cast<std::size_t>(size));
    }
    const auto begin = head.find(' ');
    const auto end = head.find(' ', begin + 1);
    if (end != std::string::npos) {
        const std::string request = head.substr(begin + 1, end - begin - 1);
        {
            const std::lock_guard lock(m_mutex);
            m_requests.push_back(request);
            m_lastHead = head;
        }
        const Answer answer = m_script(request);
        for (int waited = 0; waited < answer.delayMilliseconds && !m_ends; waited += kTurnMilliseconds) {
            std::this_thread::sleep_for(std::chrono::milliseconds(kTurnMilliseconds));
        }
        (void)send(client, answer.bytes.data(), answer.bytes.size(), MSG_NOSIGNAL);
        while (answer.stays && !m_ends) {
            if (CanRead(client, kTurnMilliseconds) && recv(client, piece, sizeof piece, 0) <= 0) break;
        }
    }
    close(client);
}

}  // namespace quillary
