#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

/// What is done with a system call that a child process is about to make.
struct Interruption {
    bool isKill = false;
    int error = 0;  ///< The call is not made, and fails with this.
};

/// What became of a child process.
struct TracedRun {
    std::vector<int> calls;   ///< The numbers of the system calls about files that it made.
    std::optional<int> code;  ///< What it returned, 0 to 125; nothing when it was killed.
};

/// Whether system calls can be traced and changed here.
[[nodiscard]] bool canTraceSystemCalls();

/// Runs `body` in a child process and asks `decide` before each system call that a disk could make fail, with how many
/// such came before and the call's number; `decide` runs in this process while the child waits.
[[nodiscard]] TracedRun runTraced(const std::function<int()>& body,
                                  const std::function<Interruption(std::size_t, int)>& decide);
