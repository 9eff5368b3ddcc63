#include "Comparisons.h"
#include "Measure.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace {

/// The longest times of one run, in milliseconds.
struct Longest {
    double stall = 0;
    double drawing = 0;
    double keystroke = 0;
    double rows = 0;
};

Longest measureScan(const std::string& line) {
    std::fflush(stdout);
    FILE* const answer = popen(line.c_str(), "r");  // NOLINT: our own program
    Longest longest;
    if (answer == nullptr || std::fscanf(answer, "%lf %lf %lf %lf", &longest.stall, &longest.drawing,
                                         &longest.keystroke, &longest.rows) != 4) {
        std::cerr << "the window could not be measured\n";
        std::exit(1);
    }
    pclose(answer);
    return longest;
}

void print(const char* what, const std::vector<double>& times) {
    std::printf("%-36s %10.1f %10.1f\n", what, median(times), *std::max_element(times.begin(), times.end()));
}

}  // namespace

void compareWindows(const std::string& programs, const std::string& tree) {
    if (std::getenv("DISPLAY") == nullptr && std::getenv("WAYLAND_DISPLAY") == nullptr) {
        std::printf("\n(there is no display: no windows)\n");
        return;
    }
    setenv("QT_QUICK_BACKEND", "software", 1);
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
    budget("first frame, beside an empty window", median(candidates[0].times), median(candidates[2].times), 1.5);

    // The longest of many frames is affected by other programs; the median of several runs is not.
    constexpr int rounds = 5;
    std::vector<double> stall;
    std::vector<double> drawing;
    std::vector<double> keystroke;
    std::vector<double> rows;
    for (int round = 0; round < rounds; ++round) {
        const Longest longest = measureScan(programs + "/duskfern_window scan '" + tree + "'");
        stall.push_back(longest.stall);
        drawing.push_back(longest.drawing);
        keystroke.push_back(longest.keystroke);
        rows.push_back(longest.rows);
    }
    std::printf("\nthe longest of each of %d runs, ms %10s %10s\n", rounds, "median", "most");
    print("event loop blocked while scanning", stall);
    print("frame drawn meanwhile", drawing);
    print("keystroke to list and count", keystroke);
    print("keystroke to the rows", rows);
    budget("event loop blocked while scanning, ms", median(stall), 1, 16);
    budget("keystroke in the window, ms to list and count", median(keystroke), 1, 10);
    budget("keystroke in the window, ms to the rows", median(rows), 1, 16);
}
