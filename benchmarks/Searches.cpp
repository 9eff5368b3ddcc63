#include "Comparisons.h"
#include "Measure.h"

#include "SpaceScan/FileScanner.h"
#include "SpaceScan/FilteredFiles.h"
#include "SpaceScan/RecordSort.h"

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
            hits = FilteredFiles(result.files, FileCategory::all, QString::fromUtf8(text)).size();
            times.push_back(inMilliseconds(Clock::now() - start));
        }
        std::printf("%-28s %10.2f %10zu\n", text, median(times), hits);
        maximum = std::max(maximum, median(times));
        if (hits < result.files.size() / 100) {
            few = std::max(few, median(times));
        }
    }
    budget("search, ms a keystroke", maximum, 1, 10);
    budget("search, ms a keystroke where under 1 % match", few, 1, 4);
}

void compareSorts(const std::string& tree) {
    const FileList files = FileScanner::scan(FileURL(tree), [](std::int64_t) {}).files;
    std::vector<SortKey> keys;
    std::uint32_t bits = 0;
    for (std::uint32_t number = 0; number < files.size(); ++number) {
        // In the order in which they were found.
        keys.push_back({static_cast<std::uint32_t>(files.sizeAt(files.indexOfKey(files.keyOfNumber(number))) >> 12), number});
        bits |= keys.back().size;
    }
    std::vector<double> ours;
    std::vector<double> standard;
    for (int round = 0; round < 5; ++round) {
        std::vector<SortKey> copy = keys;
        Clock::time_point start = Clock::now();
        sortBySizeDescending(copy, bits);
        ours.push_back(inMilliseconds(Clock::now() - start));
        copy = keys;
        start = Clock::now();
        std::stable_sort(copy.begin(), copy.end(), [](const auto& a, const auto& b) { return a.size > b.size; });
        standard.push_back(inMilliseconds(Clock::now() - start));
    }
    std::printf("\nsort of %zu records, medians of 5: %.1f ms, std::stable_sort %.1f ms\n", keys.size(), median(ours),
                median(standard));
}
