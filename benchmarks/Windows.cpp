#include "Contests.h"
#include "Measure.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <iostream>

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

    const std::string line = programs + "/duskfern_window scan '" + tree + "'";
    std::fflush(stdout);
    FILE* const answer = popen(line.c_str(), "r");  // NOLINT: our own program
    double absence = 0;
    double drawing = 0;
    double keystroke = 0;
    double rows = 0;
    if (answer == nullptr || std::fscanf(answer, "%lf %lf %lf %lf", &absence, &drawing, &keystroke, &rows) != 4) {
        std::cerr << "the window could not be measured\n";
        std::exit(1);
    }
    pclose(answer);
    std::printf("\ninterface thread away while scanning, at most %.1f ms (the longest frame drawn took %.1f ms)\n",
                absence, drawing);
    std::printf("keystroke in the window: list and count after %.1f ms, rows after %.1f ms, at most\n", keystroke,
                rows);
    budget("interface thread away while scanning, ms", absence, 1, 16);
    budget("keystroke in the window, ms to list and count", keystroke, 1, 10);
    budget("keystroke in the window, ms to the rows", rows, 1, 16);
}
