#include "Comparisons.h"
#include "Measure.h"

#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <map>

namespace {

/// The values of several runs, by their names.
using Values = std::map<std::string, std::vector<double>>;

/// Runs a command of ours that prints lines of a name and a value, and adds these to `values`.
void measure(const std::string& line, Values& values) {
    std::fflush(stdout);
    FILE* const answer = popen(line.c_str(), "r");  // NOLINT: our own program
    std::array<char, 64> name{};
    double value = 0;
    while (answer != nullptr && std::fscanf(answer, "%63s %lf", name.data(), &value) == 2) {
        values[name.data()].push_back(value);
    }
    const int status = answer == nullptr ? -1 : pclose(answer);
    if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::cerr << "the window could not be measured: " << line << '\n';
        std::exit(1);
    }
}

/// A value that a run of the window prints, and what it may be.
struct Row {
    const char* run;
    const char* value;
    const char* what;
    double limit;
};

/// Times during which the window's thread is away, and the load of a moving bar.
constexpr std::array<Row, 6> rows{{
    {"scan", "stall", "window away while scanning, ms, longest", 16},
    {"scan", "keystroke", "keystroke in the window, ms to list and count", 8},
    {"scan", "rows", "keystroke in the window, ms to the rows", 16},
    {"home", "stall", "window away while Inicio measures, ms, longest", 16},
    {"junk", "stall", "window away while junk is looked for, ms, longest", 16},
    {"bar", "bar", "progress bar shown, % of a core", 10},
}};

void compareFirstFrames(const std::string& programs) {
    std::vector<Candidate> candidates{
        {"the program", command({programs + "/duskfern_window", "first-frame"})},
        {"the program, volumes shown", command({programs + "/duskfern_window", "volumes"})},
        {"an empty window", command({programs + "/duskfern_empty_window"})},
    };
    (void)compareInTurns(candidates, 9);
    std::printf("\nfrom start to first frame and end, medians of 9:\n");
    for (const Candidate& candidate : candidates) {
        std::printf("%-28s %10.0f ms\n", candidate.name.c_str(), median(candidate.times));
    }
    budget("first frame, beside an empty window", median(candidates[0].times), median(candidates[2].times), 1.3);
}

/// Waits that others cause are in every maximum, so the rows of a single run say little.
void compareRuns(const std::string& window, const std::string& tree) {
    constexpr int rounds = 10;
    std::map<std::string, Values> runs;
    for (int round = 0; round < rounds; ++round) {
        for (const char* const run : {"scan", "home", "junk"}) {
            measure(window + " " + run + " '" + tree + "'", runs[run]);
        }
    }
    measure(window + " bar '" + tree + "'", runs["bar"]);
    std::printf("\nof %d runs %49s %10s\n", rounds, "median", "longest");
    for (const Row& row : rows) {
        const std::vector<double>& values = runs.at(row.run).at(row.value);
        const double longest = *std::max_element(values.begin(), values.end());
        std::printf("%-52s %10.1f %10.1f\n", row.what, median(values), longest);
        budget(row.what, longest, 1, row.limit);
    }
}

}  // namespace

void compareWindows(const std::string& programs, const std::string& tree) {
    if (std::getenv("DISPLAY") == nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr) {
        std::printf("\n(there is no display: no windows)\n");
        return;
    }
    // With what the program chooses by itself.
    const std::string window = programs + "/duskfern_window";
    Values rescans;
    for (int round = 0; round < 3; ++round) {
        measure(window + " rescan '" + tree + "'", rescans);
    }
    budget("scan in the window, beside the scan alone", median(rescans["shown"]), median(rescans["alone"]), 1.1);

    setenv("QT_QUICK_BACKEND", "software", 1);
    compareFirstFrames(programs);
    compareRuns(window, tree);
    Values ours;
    Values empty;
    measure(window + " rest '" + tree + "'", ours);
    measure(programs + "/duskfern_empty_window rest", empty);
    budget("megabytes at rest, beside an empty window", ours["rest"].front(), empty["rest"].front(), 1.3);
}
