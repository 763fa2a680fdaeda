// Ends connections that take too long: for a request's head, between requests, or for a response. A limit on silence
// alone would let a client that sends a byte now and then stay for ever.
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
        explicit Connection(int socket) : m_socket(socket) {}
        void EndIn(Seconds time);

      private:
        friend class Deadlines;
        int m_socket;
        std::atomic<std::int64_t> m_deadline{0};
        std::list<Connection*>::iterator m_place;
    };

    Deadlines();
    ~Deadlines();
    Deadlines(const Deadlines&) = delete;
    Deadlines& operator=(const Deadlines&) = delete;

    /// The socket is shut down, not closed, when the time given is over.
    [[nodiscard]] Connection* Add(int socket, Seconds time);
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
