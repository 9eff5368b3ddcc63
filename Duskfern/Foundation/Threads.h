#pragma once

#include <chrono>
#include <cstddef>
#include <functional>

/// Threads for work that may wait for a disk. Where the system has none to give, everything is done with fewer, or on
/// the calling one; no function of these throws for that reason.
namespace Threads {

/// Where a thread stands in the queue for a processor.
enum class Priority {
    normal,
    background,  ///< Behind the window: what a person looks at comes first.
};

/// Runs `work` on a new thread that nobody waits for. False, with nothing run, when there is no thread to be had.
[[nodiscard]] bool start(std::function<void()> work, Priority priority = Priority::normal) noexcept;

/// Waits until no thread of `start` runs any more, but not longer than that. False when some still do: caught in a
/// mount that does not answer, which no one can end.
[[nodiscard]] bool waitForAll(std::chrono::milliseconds patience);

/// Runs `work(0)` to `work(count - 1)`, one of them on this thread and the others on new ones as far as they are to be
/// had, and returns when all have ended. `work` must not wait for another index: they may run one after the other.
void runAll(std::size_t count, const std::function<void(std::size_t)>& work);

}  // namespace Threads
