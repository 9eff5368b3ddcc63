#include "Contests.h"
#include "Measure.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>

namespace {

/// What took longest in one run, in milliseconds.
struct Longest {
    double absence = 0;
    double drawing = 0;
    double keystroke = 0;
    double rows = 0;
};

Longest measureScan(const std::string& line) {
    std::fflush(stdout);
    FILE* const answer = popen(line.c_str(), "r");  // NOLINT: our own program
    Longest longest;
    if (answer == nullptr || std::fscanf(answer, "%lf %lf %lf %lf", &longest.absence, &longest.drawing,
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
    std::vector<Contestant> contestants{
        {"the program", command({programs + "/duskfern_window", "first-frame"})},
        {"the program, volumes shown", command({programs + "/duskfern_window", "volumes"})},
        {"an empty window", command({programs + "/duskfern_empty_window"})},
    };
    (void)compete(contestants, 9);
    std::printf("\nfrom start to first frame and end, medians of 9:\n");
    for (const Contestant& contestant : contestants) {
        std::printf("%-28s %10.0f ms\n", contestant.name.c_str(), median(contestant.times));
    }
    budget("first frame, beside an empty window", median(contestants[0].times), median(contestants[2].times), 1.5);

    // Whatever else the machine does shows in the longest of many frames; a few runs tell it apart.
    constexpr int rounds = 5;
    std::vector<double> absence;
    std::vector<double> drawing;
    std::vector<double> keystroke;
    std::vector<double> rows;
    for (int round = 0; round < rounds; ++round) {
        const Longest longest = measureScan(programs + "/duskfern_window scan '" + tree + "'");
        absence.push_back(longest.absence);
        drawing.push_back(longest.drawing);
        keystroke.push_back(longest.keystroke);
        rows.push_back(longest.rows);
    }
    std::printf("\nthe longest of each of %d runs, ms %10s %10s\n", rounds, "median", "most");
    print("interface thread away while scanning", absence);
    print("frame drawn meanwhile", drawing);
    print("keystroke to list and count", keystroke);
    print("keystroke to the rows", rows);
    budget("interface thread away while scanning, ms", median(absence), 1, 16);
    budget("keystroke in the window, ms to list and count", median(keystroke), 1, 10);
    budget("keystroke in the window, ms to the rows", median(rows), 1, 16);
}
