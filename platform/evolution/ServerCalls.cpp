#include "platform/evolution/ServerCalls.h"

namespace quillary {

ServerCalls::ServerCalls() : m_context(g_main_context_new()), m_watcher([this] { Watch(); }) {}

ServerCalls::~ServerCalls() {
    {
        const std::lock_guard lock(m_mutex);
        m_isOver = true;
    }
    m_changed.notify_one();
    m_watcher.join();
    g_main_context_unref(m_context);
}

void ServerCalls::Start(std::chrono::seconds limit) {
    g_main_context_push_thread_default(m_context);
    {
        const std::lock_guard lock(m_mutex);
        m_cancellable.reset(g_cancellable_new());
        m_end = Clock::now() + limit;
    }
    m_changed.notify_one();
}

void ServerCalls::Stop() {
    {
        const std::lock_guard lock(m_mutex);
        m_end = Clock::time_point::max();
    }
    m_hasTimedOut = g_cancellable_is_cancelled(m_cancellable.get()) != FALSE;
    g_main_context_pop_thread_default(m_context);
}

void ServerCalls::Watch() {
    std::unique_lock lock(m_mutex);
    while (!m_isOver) {
        const Clock::time_point end = m_end;
        if (end == Clock::time_point::max()) {
            m_changed.wait(lock);
        } else if (Clock::now() < end) {
            m_changed.wait_until(lock, end);
        } else {
            m_end = Clock::time_point::max();
            // What is called when it is cancelled may wait for the call, which may be in Stop.
            const Owned<GCancellable> cancellable(G_CANCELLABLE(g_object_ref(m_cancellable.get())));
            lock.unlock();
            g_cancellable_cancel(cancellable.get());
            g_main_context_wakeup(m_context);
            lock.lock();
        }
    }
}

}  // namespace quillary
