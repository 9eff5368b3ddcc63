#include "Comparisons.h"
#include "Measure.h"

#include "SpaceScan/FileScanner.h"
#include "SpaceScan/FilteredFiles.h"

#include <algorithm>
#include <cstdio>

void compareSearches(const std::string& tree) {
    const ScanResult result = FileScanner::scan(FileURL(tree), [](std::int64_t) {});
    std::printf("\nsearch in %zu names, medians of 9:\n%-28s %10s %10s\n", result.files.size(), "", "ms", "hits");
    double maximum = 0;
    double few = 0;
    for (const char* text : {"a", "z", "año", "foto", "vacacion", "zzzzzzzz", "índice-9"}) {
        std::vector<double> times;
        std::size_t hits = 0;
        for (int round = 0; round < 9; ++round) {
            const Clock::time_point start = Clock::now();
            const FilteredFiles found(result.files, FileCategory::all, QString::fromUtf8(text));
            hits = found.size();
            if (hits > 0) {
                (void)found.keyAt(std::min<std::size_t>(hits, 1000) - 1);
            }
            times.push_back(inMilliseconds(Clock::now() - start));
        }
        std::printf("%-28s %10.2f %10zu\n", text, median(times), hits);
        maximum = std::max(maximum, median(times));
        if (hits < result.files.size() / 100) {
            few = std::max(few, median(times));
        }
    }
    budget("search and first rows, ms", maximum, 1, 8);
    budget("search where under 1 % match, ms", few, 1, 4);

    FileList files = result.files;
    for (std::size_t removed = 0; removed < 300; ++removed) {
        files = files.removing(files.urlAt(removed * files.size() / 300));
    }
    const FilteredFiles all(files, FileCategory::all, {});
    std::vector<double> chosen;
    std::vector<double> gone;
    for (const FileCategory category : FileCategories::allCases) {
        const Clock::time_point start = Clock::now();
        const FilteredFiles shown(files, category, {}, &all);
        (void)shown.keyAt(std::min<std::size_t>(shown.size(), 1000) - 1);
        chosen.push_back(inMilliseconds(Clock::now() - start));
    }
    for (int round = 0; round < 9; ++round) {
        const FileURL url = files.urlAt(files.size() / 2 + static_cast<std::size_t>(round));
        const Clock::time_point start = Clock::now();
        files = files.removing(url);
        const FilteredFiles shown(files, FileCategory::all, {}, &all);
        (void)shown.keyAt(999);
        gone.push_back(inMilliseconds(Clock::now() - start));
    }
    std::printf("after 300 removals: a category chosen %.2f ms, a file removed %.2f ms (the longest)\n",
                *std::max_element(chosen.begin(), chosen.end()), *std::max_element(gone.begin(), gone.end()));
    budget("a category chosen after 300 removals, ms", *std::max_element(chosen.begin(), chosen.end()), 1, 5);
    budget("a file removed after 300 removals, ms", *std::max_element(gone.begin(), gone.end()), 1, 2);
}
