#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

/// Starts threads. When the system cannot start one, the work is done by fewer threads or on the calling one; none of
/// these functions throws because of that.
namespace Threads {

/// Scheduling priority of a thread.
enum class Priority {
    normal,
    background,  ///< Lower than that of the window's threads.
};

/// Runs `work` on a new, detached thread. False, with nothing run, when no thread can be started.
[[nodiscard]] bool start(std::function<void()> work, Priority priority = Priority::normal) noexcept;

/// Waits until all threads of `start` have ended, at most for `patience`. False if some still run: a thread that waits
/// for a mount that does not answer cannot be ended.
[[nodiscard]] bool waitForAll(std::chrono::milliseconds patience);

/// Runs `work(0)` to `work(count - 1)` on up to `count` threads, this one among them, and returns when all have ended.
/// `work` must not wait for another index: when no threads can be started they run one after the other.
void runAll(std::size_t count, const std::function<void(std::size_t)>& work);

/// The kernel's number of a thread.
using Number = int;
[[nodiscard]] Number current();

/// How long a thread of this process has run or waited for a processor, that is, not waited for anything else; zero
/// when it has ended or the kernel does not tell.
[[nodiscard]] std::chrono::nanoseconds busyTime(Number thread);

}  // namespace Threads
