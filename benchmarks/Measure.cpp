#include "Measure.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <numeric>
#include <random>

namespace {

struct Outcome {
    double milliseconds;
    double peak;
};

Outcome inProcess(const std::function<void()>& run) {
    std::fflush(nullptr);
    const Clock::time_point start = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        run();
        std::_Exit(0);
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::cerr << "a candidate failed\n";
        std::exit(1);
    }
    return {inMilliseconds(Clock::now() - start), static_cast<double>(usage.ru_maxrss) * 1024};
}

struct BudgetRow {
    std::string what;
    double ours;
    double other;
    double limit;
};

std::vector<BudgetRow>& budgets() {
    static std::vector<BudgetRow> rows;
    return rows;
}

}  // namespace

double inMilliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

bool compareInTurns(std::vector<Candidate>& candidates, int rounds, const std::function<bool()>& prepare) {
    const double idle = inProcess([] {}).peak;
    // In another order each round: a candidate may profit from the one that ran before it.
    std::vector<std::size_t> order(candidates.size());
    std::iota(order.begin(), order.end(), 0);
    std::mt19937 random(1);
    for (int round = 0; round < rounds; ++round) {
        std::shuffle(order.begin(), order.end(), random);
        for (const std::size_t next : order) {
            if (!prepare()) {
                return false;
            }
            Candidate& candidate = candidates[next];
            const Outcome outcome = inProcess(candidate.run);
            candidate.times.push_back(outcome.milliseconds);
            candidate.peaks.push_back(outcome.peak - idle);
        }
    }
    return true;
}

std::function<void()> command(const std::vector<std::string>& words) {
    return [words] {
        std::vector<char*> arguments;
        for (const std::string& word : words) {
            arguments.push_back(const_cast<char*>(word.c_str()));  // NOLINT: execvp does not write
        }
        arguments.push_back(nullptr);
        if (std::freopen("/dev/null", "w", stdout) == nullptr) {
            std::_Exit(1);
        }
        execvp(arguments[0], arguments.data());
        std::_Exit(127);
    };
}

bool isInstalled(const std::string& program) {
    return std::system(("command -v " + program + " >/dev/null 2>&1").c_str()) == 0;  // NOLINT
}

bool dropCaches() {
    sync();
    std::ofstream file("/proc/sys/vm/drop_caches");
    file << 3 << std::flush;
    return file.good();
}

double ownMegabytes() {
    std::ifstream file("/proc/self/smaps_rollup");
    std::string word;
    while (file >> word) {
        if (word == "Pss:") {
            double kilobytes = 0;
            file >> kilobytes;
            return kilobytes / 1024;
        }
    }
    return 0;
}

void budget(const std::string& what, double ours, double other, double limit) {
    budgets().push_back({what, ours, other, limit});
}

void printBudgets() {
    std::printf("\n%-52s %10s %10s %8s %8s\n", "budgets", "ours", "against", "is", "may be");
    for (const BudgetRow& row : budgets()) {
        const double value = row.ours / row.other;
        std::printf("%-52s %10.1f %10.1f %8.2f %8.2f %s\n", row.what.c_str(), row.ours, row.other, value, row.limit,
                    value <= row.limit ? "met" : "MISSED");
    }
}
