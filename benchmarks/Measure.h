#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

using Clock = std::chrono::steady_clock;

/// Not called like the unit: the headers of newer Qt say `using namespace std::chrono`.
[[nodiscard]] double inMilliseconds(Clock::duration duration);
[[nodiscard]] double median(std::vector<double> values);

/// One way to do something; run in a process of its own so that its peak memory is its own.
struct Contestant {
    std::string name;
    std::function<void()> run;
    std::vector<double> times{};  ///< Milliseconds.
    std::vector<double> peaks{};  ///< Bytes, above those of a process that does nothing.
};

/// Runs all contestants in turn, that many rounds; `prepare` comes before each run, and ends it all when it fails.
[[nodiscard]] bool compete(
    std::vector<Contestant>& contestants, int rounds, const std::function<bool()>& prepare = [] { return true; });

/// Runs a command with its output thrown away, in place of this process.
[[nodiscard]] std::function<void()> command(const std::vector<std::string>& words);

[[nodiscard]] bool isInstalled(const std::string& program);

/// Makes the kernel forget what it knows of the disk; false where only root may.
[[nodiscard]] bool dropCaches();

/// One row of the last table: `ours` in its unit, divided by `other` (1 for an absolute budget).
void budget(const std::string& what, double ours, double other, double limit);

/// Prints the rows given so far, and whether each is within its budget.
void printBudgets();
