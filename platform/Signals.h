// The signals by which a terminal, a session or an administrator asks the program to end, brought into the event loop.
#pragma once

#include <QSocketNotifier>
#include <functional>
#include <optional>

#include "platform/posix/PosixFile.h"

namespace quillary {

/// One object at a time. While it is there SIGTERM, SIGINT and SIGHUP (unless the program was started to ignore it)
/// interrupt nothing: `end` is called from the event loop. They do what they did before once it has gone.
class Signals {
  public:
    explicit Signals(std::function<void()> end);
    ~Signals();
    Signals(const Signals&) = delete;
    Signals& operator=(const Signals&) = delete;

  private:
    void Drain() const;

    PosixFile m_readEnd;
    PosixFile m_writeEnd;
    std::optional<QSocketNotifier> m_notifier;
};

}  // namespace quillary
