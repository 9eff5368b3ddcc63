#pragma once

#include <chrono>
#include <functional>
#include <stop_token>

/// Where work runs: long work in the background, everything the screens read on the main thread.
namespace Dispatch {

/// Runs `work` at once on a thread of its own, so that work that waits for a disk without end takes nothing from any
/// other. Where no thread is to be had it runs on the main thread, later. The token asks it to end early because the
/// program is closing.
void background(std::function<void(std::stop_token)> work);

/// Runs `work` on the main thread, later, in the order of the calls. Any thread may call it. Dropped once the program
/// is closing.
void main(std::function<void()> work);

enum class Finish { clean, stuck };

/// Asks what still runs in the background to end and waits for it that long. `stuck` means that something did not:
/// a thread caught in a mount that does not answer, which no one can end.
[[nodiscard]] Finish shutDown(std::chrono::milliseconds patience);

}  // namespace Dispatch
