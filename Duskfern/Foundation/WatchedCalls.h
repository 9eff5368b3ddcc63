#pragma once

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <ctime>

/// Thrown on a thread that was abandoned while it waited for a disk. The thread must not touch the worker any more.
struct ThreadAbandoned {};

/// The disk calls of a worker's thread, for the thread that watches it. A thread can be abandoned only during a call,
/// so its work before the call is complete and it changes nothing after it.
class WatchedCalls {
public:
    /// To be called first by the worker's thread.
    void beginThread() {
        clockid_t clock{};
        if (pthread_getcpuclockid(pthread_self(), &clock) == 0) {
            m_clock.store(clock, std::memory_order_relaxed);
        }
    }

    /// The processor time that the thread has used; zero when it has ended. For the watching thread.
    [[nodiscard]] std::chrono::nanoseconds processorTime() const {
        timespec time{};
        const clockid_t clock = m_clock.load(std::memory_order_relaxed);
        return clock != noClock && clock_gettime(clock, &time) == 0
                   ? std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec)
                   : std::chrono::nanoseconds(0);
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

    static constexpr clockid_t noClock = CLOCK_REALTIME;

    std::atomic<clockid_t> m_clock = noClock;  ///< Of the thread's processor time.
    std::uint64_t m_ownCount = 0;  ///< Used by the worker's thread only.
    std::atomic<std::uint64_t> m_count = 0;
};
