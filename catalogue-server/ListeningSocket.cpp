#include "catalogue-server/ListeningSocket.h"

#include <netdb.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <cerrno>
#include <memory>

namespace quillary {

namespace {

constexpr int kBacklog = 511;

struct FreeAddress {
    void operator()(addrinfo* found) const { freeaddrinfo(found); }
};

bool Explain(const std::string& address, std::uint16_t port, std::string& message) {
    const int reason = errno;
    const std::string where = "port " + std::to_string(port) + " of " + address;
    if (reason == EADDRINUSE) {
        message = "Another program is using " + where + ". Choose one with --port.";
    } else if (reason == EADDRNOTAVAIL) {
        message = "This machine does not have the address " + address + ".";
    } else {
        message = "Cannot listen on " + where + " (" + SystemError(reason).reason + ").";
    }
    return false;
}

}  // namespace

bool Listen(const std::string& address, std::uint16_t& port, PosixFile& socket, std::string& message) {
    addrinfo wanted{};
    wanted.ai_socktype = SOCK_STREAM;
    wanted.ai_flags = AI_NUMERICHOST | AI_NUMERICSERV | AI_PASSIVE;
    addrinfo* list = nullptr;
    if (getaddrinfo(address.c_str(), std::to_string(port).c_str(), &wanted, &list) != 0) {
        message = "\"" + address + "\" is no address. Give one as 127.0.0.1, 0.0.0.0 or ::1.";
        return false;
    }
    const std::unique_ptr<addrinfo, FreeAddress> found(list);
    socket = PosixFile(::socket(found->ai_family, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0));
    const int on = 1;
    if (!socket || setsockopt(socket.Descriptor(), SOL_SOCKET, SO_REUSEADDR, &on, sizeof on) != 0 ||
        bind(socket.Descriptor(), found->ai_addr, found->ai_addrlen) != 0 ||
        listen(socket.Descriptor(), kBacklog) != 0) {
        return Explain(address, port, message);
    }
    sockaddr_storage bound{};
    socklen_t length = sizeof bound;
    if (getsockname(socket.Descriptor(), reinterpret_cast<sockaddr*>(&bound), &length) != 0) {
        return Explain(address, port, message);
    }
    // The port stands at the same place in both families' addresses.
    static_assert(offsetof(sockaddr_in, sin_port) == offsetof(sockaddr_in6, sin6_port));
    port = ntohs(reinterpret_cast<const sockaddr_in*>(&bound)->sin_port);
    return true;
}

}  // namespace quillary
