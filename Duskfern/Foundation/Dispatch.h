#pragma once

#include <chrono>
#include <functional>
#include <stop_token>

/// Runs work on threads: long work in the background, and everything that the screens read on the main thread.
namespace Dispatch {

/// Runs `work` on a thread of its own, so that work that waits for a disk forever does not delay any other. If no
/// thread can be started, it runs on the main thread, later. The token asks it to end early because the program is
/// closing.
void background(std::function<void(std::stop_token)> work);

/// Runs `work` on the main thread, later, in the order of the calls. Any thread may call it. Dropped once the program
/// is closing.
void main(std::function<void()> work);

enum class Finish { clean, stuck };

/// Asks all background work to end and waits for it up to `patience`. `stuck` means that some did not end: a thread
/// that waits for a mount that does not answer cannot be ended.
[[nodiscard]] Finish shutDown(std::chrono::milliseconds patience);

}  // namespace Dispatch
