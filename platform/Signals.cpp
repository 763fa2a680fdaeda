#include "platform/Signals.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace quillary {

namespace {

constexpr std::array kSignals = {SIGTERM, SIGINT, SIGHUP};

// A handler may use nothing else: what it reads must be lock-free and there before it is installed.
volatile std::sig_atomic_t writeDescriptor = -1;
std::array<struct sigaction, kSignals.size()> before;

void Wake(int) {
    const int saved = errno;
    const char byte = 0;
    // A full pipe means that the event loop has been told already.
    [[maybe_unused]] const ssize_t written = write(writeDescriptor, &byte, 1);
    errno = saved;
}

}  // namespace

Signals::Signals(std::function<void()> end) {
    std::array<int, 2> ends{};
    if (pipe2(ends.data(), O_CLOEXEC | O_NONBLOCK) != 0) return;  // the signals then end the program at once
    m_readEnd = PosixFile(ends[0]);
    m_writeEnd = PosixFile(ends[1]);
    writeDescriptor = m_writeEnd.Descriptor();
    m_notifier.emplace(m_readEnd.Descriptor(), QSocketNotifier::Read);
    QObject::connect(&*m_notifier, &QSocketNotifier::activated, &*m_notifier, [this, end = std::move(end)] {
        Drain();
        end();
    });
    struct sigaction action {};
    action.sa_handler = Wake;
    action.sa_flags = SA_RESTART;  // a save in progress goes on
    sigemptyset(&action.sa_mask);
    for (std::size_t i = 0; i < kSignals.size(); ++i) {
        sigaction(kSignals[i], nullptr, &before[i]);
        if (before[i].sa_handler != SIG_IGN) sigaction(kSignals[i], &action, nullptr);
    }
}

Signals::~Signals() {
    if (!m_readEnd) return;
    for (std::size_t i = 0; i < kSignals.size(); ++i) sigaction(kSignals[i], &before[i], nullptr);
    writeDescriptor = -1;
}

void Signals::Drain() const {
    std::array<char, 64> bytes{};
    while (read(m_readEnd.Descriptor(), bytes.data(), bytes.size()) > 0) {
    }
}

}  // namespace quillary
