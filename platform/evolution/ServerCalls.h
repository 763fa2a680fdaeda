// Calls to a server that may not answer: its libraries wait for ever, and tell what happens to it on an event loop,
// which a worker thread does not have and which is not to be the window's.
#pragma once

#include <gio/gio.h>

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>

namespace quillary {

struct Unref {
    void operator()(gpointer object) const { g_object_unref(object); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Unref>;

/// One call at a time, from any thread.
class ServerCalls {
  public:
    ServerCalls();
    ~ServerCalls();
    ServerCalls(const ServerCalls&) = delete;
    ServerCalls& operator=(const ServerCalls&) = delete;

    /// Makes the call with what cancels it after `limit`, and returns its answer. What the call makes gets its events
    /// in WaitUntil alone.
    template <class Call>
    auto Within(std::chrono::seconds limit, Call call) {
        Start(limit);
        auto answer = call(m_cancellable.get());
        Stop();
        return answer;
    }
    /// Whether the last call has been ended so.
    [[nodiscard]] bool HasTimedOut() const { return m_hasTimedOut; }

    /// Lets events happen until `isSo`, or for `limit`.
    template <class Predicate>
    void WaitUntil(std::chrono::seconds limit, Predicate isSo) {
        (void)Within(limit, [&](GCancellable* cancellable) {
            while (!isSo() && !g_cancellable_is_cancelled(cancellable)) g_main_context_iteration(m_context, TRUE);
            return true;
        });
        m_hasTimedOut = false;
    }

  private:
    using Clock = std::chrono::steady_clock;

    void Start(std::chrono::seconds limit);
    void Stop();
    void Watch();

    GMainContext* m_context;
    Owned<GCancellable> m_cancellable;
    bool m_hasTimedOut = false;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    Clock::time_point m_end = Clock::time_point::max();  // no call is made
    bool m_isOver = false;
    std::thread m_watcher;
};

}  // namespace quillary
