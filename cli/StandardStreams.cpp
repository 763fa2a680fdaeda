#include "cli/StandardStreams.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstring>

namespace quillary {

void PrepareStandardStreams() {
    for (int stream = 0; stream <= 2; ++stream) {
        if (::fcntl(stream, F_GETFD) != -1 || errno != EBADF) continue;
        // The lowest free number is `stream`. Opened the wrong way round, so that using it still fails.
        const int opened = ::open("/dev/null", stream == 0 ? O_WRONLY : O_RDONLY);
        if (opened > stream) ::close(opened);
    }
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
}

bool IsTerminal(StandardStream stream) { return ::isatty(static_cast<int>(stream)) == 1; }

WriteResult WriteAll(StandardStream stream, std::string_view bytes, std::string& reason) {
    const int number = static_cast<int>(stream);
    while (!bytes.empty()) {
        const ssize_t written = ::write(number, bytes.data(), bytes.size());
        if (written >= 0) {
            bytes.remove_prefix(static_cast<std::size_t>(written));
        } else if (errno == EAGAIN) {
            pollfd ready{number, POLLOUT, 0};
            (void)::poll(&ready, 1, -1);
        } else if (errno == EPIPE) {
            return WriteResult::ReaderLeft;
        } else if (errno != EINTR) {
            reason = std::strerror(errno);
            return WriteResult::Failed;
        }
    }
    return WriteResult::Done;
}

}  // namespace quillary
