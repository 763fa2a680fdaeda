// Lets a command clean up when the user or the system ends it: Ctrl+C, a closed terminal, a request to end.
#pragma once

#include <csignal>
#include <functional>
#include <thread>

namespace quillary {

class Interrupts {
  public:
    /// Calls `stop`, on a thread of its own, when such a signal comes. Before any other thread is made.
    explicit Interrupts(std::function<void()> stop);
    /// The program then ends by the signal that came, if one did.
    ~Interrupts();
    Interrupts(const Interrupts&) = delete;
    Interrupts& operator=(const Interrupts&) = delete;

  private:
    void Watch();

    std::function<void()> m_stop;
    sigset_t m_before{};
    int m_signals = -1;  // descriptors
    int m_end = -1;
    int m_came = 0;
    std::thread m_thread;
};

}  // namespace quillary
