#pragma once

#include "Foundation/Threads.h"

#include <atomic>
#include <chrono>
#include <cstdint>

/// Thrown on a thread that was abandoned while it waited for a disk. The thread must not touch the worker any more.
struct ThreadAbandoned {};

/// The disk calls of a worker's thread, for the thread that watches it. A thread can be abandoned only during a call,
/// so its work before the call is complete and it changes nothing after it.
class WatchedCalls {
public:
    /// To be called first by the worker's thread.
    void beginThread() { m_thread.store(Threads::current(), std::memory_order_relaxed); }

    /// `Threads::busyTime` of the thread. For the watching thread.
    [[nodiscard]] std::chrono::nanoseconds busyTime() const {
        return Threads::busyTime(m_thread.load(std::memory_order_relaxed));
    }

    /// A disk call begins. Called by the worker's thread, like `leave()`.
    void enter() { m_count.store(++m_ownCount, std::memory_order_release); }

    /// The call has returned. False if the thread was abandoned meanwhile.
    [[nodiscard]] bool leave() {
        std::uint64_t expected = m_ownCount++;
        return m_count.compare_exchange_strong(expected, m_ownCount, std::memory_order_acq_rel);
    }

    /// For the watching thread. An odd number means that a call is in progress; the same odd number as before means
    /// that it is the same call.
    [[nodiscard]] std::uint64_t count() const { return m_count.load(std::memory_order_relaxed); }

    /// Abandons the thread if the call with this number is still in progress.
    [[nodiscard]] bool abandon(std::uint64_t count) {
        return count % 2 == 1 && m_count.compare_exchange_strong(count, abandoned, std::memory_order_acq_rel);
    }

private:
    static constexpr std::uint64_t abandoned = ~std::uint64_t{0};

    std::atomic<Threads::Number> m_thread = 0;
    std::uint64_t m_ownCount = 0;  ///< Used by the worker's thread only.
    std::atomic<std::uint64_t> m_count = 0;
};
