#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

using Clock = std::chrono::steady_clock;

/// Not named `milliseconds`, because headers of newer Qt say `using namespace std::chrono`.
[[nodiscard]] double inMilliseconds(Clock::duration duration);
[[nodiscard]] double median(std::vector<double> values);

/// One of the things compared. Runs in a process of its own, so that its peak memory can be measured.
struct Candidate {
    std::string name;
    std::function<void()> run;
    std::vector<double> times{};  ///< Milliseconds.
    std::vector<double> peaks{};  ///< Bytes more than a process that does nothing.
};

/// Runs all candidates in turn, in that many rounds. `prepare` is called before each run; if it fails, the comparison
/// ends.
[[nodiscard]] bool compareInTurns(
    std::vector<Candidate>& candidates, int rounds, const std::function<bool()>& prepare = [] { return true; });

/// Replaces this process by a command whose output is discarded.
[[nodiscard]] std::function<void()> command(const std::vector<std::string>& words);

[[nodiscard]] bool isInstalled(const std::string& program);

/// Drops the kernel's caches of the disk; false if not permitted (root only).
[[nodiscard]] bool dropCaches();

/// The memory of this process in megabytes, what it shares with others in proportion; 0 if the kernel does not tell.
[[nodiscard]] double ownMegabytes();

/// Adds a row to the last table: `ours` divided by `other` (1 for an absolute budget).
void budget(const std::string& what, double ours, double other, double limit);

/// Prints these rows, and whether each is within its budget.
void printBudgets();
