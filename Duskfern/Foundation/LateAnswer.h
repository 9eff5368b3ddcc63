#pragma once

#include <functional>
#include <mutex>

/// Tells when something that was skipped after a timeout answers after all. Any thread may call its functions.
class LateAnswer {
public:
    /// Calls `handler` once, on any thread, at the first late answer; immediately if there already was one.
    void whenAnswered(std::function<void()> handler);

    /// Records that something that was skipped has answered.
    void notifyAnswered();

private:
    std::mutex m_mutex;
    bool m_hasAnswered = false;
    std::function<void()> m_handler;
};
