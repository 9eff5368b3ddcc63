// Compares the scan and the search with other ways to do the same, side by side on one tree:
//     duskfern_compare FILES [FOLDER]
// FOLDER is where the tree is kept between runs, beneath the build directory by default.

#include "BareWalk.h"
#include "ReferenceTree.h"

#include "SpaceScan/FileScanner.h"
#include "SpaceScan/FilteredFiles.h"
#include "SpaceScan/RecordSort.h"

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <functional>
#include <iostream>
#include <string>
#include <vector>

namespace {

using Clock = std::chrono::steady_clock;

double milliseconds(Clock::duration duration) {
    return std::chrono::duration<double, std::milli>(duration).count();
}

double median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

/// One way to walk the tree; run in a process of its own so that its peak memory is its own.
struct Contestant {
    std::string name;
    std::function<void()> run;
    std::vector<double> times;
    std::vector<double> peaks;  ///< Bytes, above those of a process that does nothing.
};

struct Outcome {
    double milliseconds;
    double peak;
};

Outcome inProcess(const std::function<void()>& run) {
    const Clock::time_point start = Clock::now();
    const pid_t child = fork();
    if (child == 0) {
        run();
        std::_Exit(0);
    }
    int status = 0;
    rusage usage{};
    if (wait4(child, &status, 0, &usage) < 0 || !WIFEXITED(status) || WEXITSTATUS(status) != 0) {
        std::cerr << "a contestant failed\n";
        std::exit(1);
    }
    return {milliseconds(Clock::now() - start), static_cast<double>(usage.ru_maxrss) * 1024};
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

void walks(const std::string& tree, std::int64_t files, bool cold) {
    const auto scan = [&] { (void)FileScanner::scan(FileURL(tree), [](std::int64_t) {}); };
    std::vector<Contestant> contestants{
        {"FileScanner::scan", scan, {}, {}},
        {"bare walk, 1 thread", [&] { bareWalk(tree, 1); }, {}, {}},
        {"bare walk, 2 threads", [&] { bareWalk(tree, 2); }, {}, {}},
        {"bare walk, 4 threads", [&] { bareWalk(tree, 4); }, {}, {}},
        {"bare walk, 8 threads", [&] { bareWalk(tree, 8); }, {}, {}},
        {"du -s", command({"du", "-s", tree}), {}, {}},
        {"find -printf", command({"find", tree, "-printf", "%b %p\n"}), {}, {}},
    };
    if (isInstalled("ncdu")) {
        contestants.push_back({"ncdu", command({"ncdu", "-0", "-o", "/dev/null", tree}), {}, {}});
    }
    if (isInstalled("gdu")) {
        contestants.push_back({"gdu", command({"gdu", "-n", "-p", "-s", tree}), {}, {}});
    }
    const double idle = inProcess([] {}).peak;
    if (!cold) {
        bareWalk(tree, 4);
    }
    for (int round = 0; round < (cold ? 3 : 5); ++round) {
        for (Contestant& contestant : contestants) {
            if (cold && !dropCaches()) {
                std::cout << "\n(caches cannot be dropped here: no cold runs)\n";
                return;
            }
            const Outcome outcome = inProcess(contestant.run);
            contestant.times.push_back(outcome.milliseconds);
            contestant.peaks.push_back(outcome.peak - idle);
        }
    }
    const double ours = median(contestants.front().times);
    std::printf("\n%s cache, medians:\n%-24s %10s %14s %14s\n", cold ? "cold" : "warm", "", "ms", "ours / it",
                "peak, B/file");
    for (const Contestant& contestant : contestants) {
        const double time = median(contestant.times);
        std::printf("%-24s %10.0f %14.2f %14.0f\n", contestant.name.c_str(), time, ours / time,
                    median(contestant.peaks) / static_cast<double>(files));
    }
}

void searches(const std::string& tree) {
    const ScanResult result = FileScanner::scan(FileURL(tree), [](std::int64_t) {});
    std::printf("\nsearch in %zu names, medians of 9:\n%-24s %10s %10s\n", result.files.size(), "", "ms", "hits");
    for (const char* text : {"a", "z", "año", "foto", "vacacion", "zzzzzzzz", "índice-9"}) {
        std::vector<double> times;
        std::size_t hits = 0;
        for (int round = 0; round < 9; ++round) {
            const Clock::time_point start = Clock::now();
            hits = FilteredFiles(result.files, FileCategory::all, QString::fromUtf8(text)).size();
            times.push_back(milliseconds(Clock::now() - start));
        }
        std::printf("%-24s %10.2f %10zu\n", text, median(times), hits);
    }
}

void sorts(const std::string& tree) {
    const FileList files = FileScanner::scan(FileURL(tree), [](std::int64_t) {}).files;
    std::vector<FileRecord> records(files.size());
    for (std::size_t i = 0; i < records.size(); ++i) {
        // Sizes like those of a home: many small ones, a few of gigabytes, in no order.
        const std::uint64_t mixed = (i + 1) * 0x9E3779B97F4A7C15;
        records[i].size = ((mixed >> 20) >> (mixed % 32)) * 4096 & ((std::uint64_t{1} << FileRecord::sizeBits) - 1);
    }
    std::vector<double> ours;
    std::vector<double> standard;
    for (int round = 0; round < 5; ++round) {
        std::vector<FileRecord> copy = records;
        Clock::time_point start = Clock::now();
        (void)sortBySizeDescending(copy);
        ours.push_back(milliseconds(Clock::now() - start));
        copy = records;
        start = Clock::now();
        std::stable_sort(copy.begin(), copy.end(), [](const auto& a, const auto& b) { return a.size > b.size; });
        standard.push_back(milliseconds(Clock::now() - start));
    }
    std::printf("\nsort of %zu records, medians of 5: %.1f ms, std::stable_sort %.1f ms\n", records.size(),
                median(ours), median(standard));
}

}  // namespace

int main(int argc, char** argv) {
    const std::int64_t files = argc > 1 ? std::atoll(argv[1]) : 100'000;
    const std::string base = argc > 2 ? argv[2] : DUSKFERN_BENCHMARK_ROOT;
    const std::string tree = base + "/tree-" + std::to_string(files);
    std::printf("tree of %lld files: %s\n", static_cast<long long>(files), tree.c_str());
    std::fflush(stdout);
    makeReferenceTree(tree, files, 20'231);
    walks(tree, files, false);
    std::fflush(stdout);
    searches(tree);
    sorts(tree);
    std::fflush(stdout);
    walks(tree, files, true);
    return 0;
}
