#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <vector>

/// What became of a child process.
struct TracedRun {
    std::vector<int>
        calls;  ///< The numbers of the system calls about files that it made; none if nothing can be traced.
    std::optional<int> code;  ///< What it returned, 0 to 125; nothing when it was killed.
};

/// In place of an error: the process is killed before it makes the call.
inline constexpr int killInstead = -1;

/// Runs `body` in a child process and asks `errorOf`, before each system call that a disk could make fail, what it is
/// to fail with, 0 if it is to be made. `errorOf` is told how many such calls came before, and runs in this process
/// while the child waits.
[[nodiscard]] TracedRun runTraced(const std::function<int()>& body, const std::function<int(std::size_t)>& errorOf);
