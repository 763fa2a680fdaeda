// Ends connections that take too long, for a request's head, between requests, or for a response, and those whose
// client takes nothing for a while. A limit on silence alone would let a client that sends a byte now and then stay for
// ever. What the client has taken is what it has acknowledged: the system's buffers hold so much that a steady slow
// client may let the server write nothing for minutes.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <list>
#include <mutex>
#include <thread>

namespace quillary {

class Deadlines {
  public:
    using Seconds = std::chrono::seconds;

    class Connection {
      public:
        Connection(int socket, Seconds silence) : m_socket(socket), m_silence(silence) {}
        void EndIn(Seconds time);
        /// What is written and not yet acknowledged.
        [[nodiscard]] std::uint64_t BytesUnderWay() const;

      private:
        friend class Deadlines;
        [[nodiscard]] bool IsOver(std::int64_t now);

        int m_socket;
        std::chrono::steady_clock::duration m_silence;
        std::atomic<std::int64_t> m_deadline{0};
        std::atomic<std::int64_t> m_silentSince{0};
        std::uint64_t m_bytesTaken = 0;
        std::list<Connection*>::iterator m_place;
    };

    Deadlines();
    ~Deadlines();
    Deadlines(const Deadlines&) = delete;
    Deadlines& operator=(const Deadlines&) = delete;

    /// The socket is shut down, not closed, when the time given, or later the one of EndIn, is over, or the client has
    /// been silent for `patience`.
    [[nodiscard]] Connection* Add(int socket, Seconds patience);
    /// To be called before the socket is closed.
    void Remove(Connection* connection);

  private:
    void Watch();

    std::mutex m_mutex;
    std::condition_variable m_stop;
    bool m_stopping = false;
    std::list<Connection*> m_connections;
    std::thread m_thread;
};

}  // namespace quillary
