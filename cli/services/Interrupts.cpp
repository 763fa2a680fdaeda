#include "cli/services/Interrupts.h"

#include <poll.h>
#include <sys/eventfd.h>
#include <sys/signalfd.h>
#include <unistd.h>

#include <utility>

namespace quillary {

Interrupts::Interrupts(std::function<void()> stop) : m_stop(std::move(stop)) {
    sigset_t signals;
    sigemptyset(&signals);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) sigaddset(&signals, signal);
    pthread_sigmask(SIG_BLOCK, &signals, &m_before);
    m_signals = signalfd(-1, &signals, SFD_CLOEXEC);
    m_end = eventfd(0, EFD_CLOEXEC);
    m_thread = std::thread([this] { Watch(); });
}

Interrupts::~Interrupts() {
    (void)eventfd_write(m_end, 1);
    m_thread.join();
    close(m_signals);
    close(m_end);
    if (m_came != 0) raise(m_came);
    pthread_sigmask(SIG_SETMASK, &m_before, nullptr);
}

void Interrupts::Watch() {
    pollfd watched[] = {{m_signals, POLLIN, 0}, {m_end, POLLIN, 0}};
    while (poll(watched, 2, -1) < 0 || watched[1].revents == 0) {
        signalfd_siginfo info{};
        if (read(m_signals, &info, sizeof info) != sizeof info) return;
        m_came = static_cast<int>(info.ssi_signo);
        m_stop();
    }
}

}  // namespace quillary
