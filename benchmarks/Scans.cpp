#include "BareWalk.h"
#include "Comparisons.h"
#include "Measure.h"
#include "ReferenceTree.h"

#include "Desktop/DesktopApplications.h"
#include "JunkCleaner/JunkScanner.h"
#include "SpaceScan/FileScanner.h"
#include "StorageOverview/StorageOverviewScanner.h"

#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <thread>

namespace {

void print(const std::vector<Candidate>& candidates, double files) {
    const double ours = median(candidates.front().times);
    for (const Candidate& candidate : candidates) {
        const double time = median(candidate.times);
        std::printf("%-28s %10.0f %14.2f %14.0f\n", candidate.name.c_str(), time, ours / time,
                    median(candidate.peaks) / files);
    }
}

/// A way to measure the size of a tree, warm and cold, beside `du`.
void compareWithDu(const std::string& what, const std::function<void()>& run, const std::string& tree) {
    for (const bool cold : {false, true}) {
        std::vector<Candidate> candidates{{what, run}, {"du -s", command({"du", "-s", tree})}};
        if (!(cold ? compareInTurns(candidates, 3, dropCaches) : compareInTurns(candidates, 5))) {
            return;
        }
        std::printf("\n%-28s %10s %14s %14s\n", cold ? "cold, medians of 3" : "warm, medians of 5", "ms", "ours / it",
                    "peak, bytes");
        print(candidates, 1);
        budget(what + (cold ? ", cold, beside du -s" : ", warm, beside du -s"), median(candidates[0].times),
               median(candidates[1].times), cold ? 0.40 : 0.45);
    }
}

/// Resident memory of this process in bytes.
double residentBytes() {
    malloc_trim(0);
    std::ifstream file("/proc/self/statm");
    double total = 0;
    double resident = 0;
    file >> total >> resident;
    return resident * static_cast<double>(sysconf(_SC_PAGESIZE));
}

}  // namespace

void compareScans(const std::string& tree, std::int64_t files, bool cold) {
    std::vector<Candidate> candidates{
        {"FileScanner::scan", [&] { (void)FileScanner::scan(FileURL(tree), [](std::int64_t) {}); }},
        {"bare walk, 1 thread", [&] { bareWalk(tree, 1); }},
        {"bare walk, 2 threads", [&] { bareWalk(tree, 2); }},
        {"bare walk, 4 threads", [&] { bareWalk(tree, 4); }},
        {"bare walk, 8 threads", [&] { bareWalk(tree, 8); }},
        {"du -s", command({"du", "-s", tree})},
        {"find -printf", command({"find", tree, "-printf", "%b %p\n"})},
    };
    if (isInstalled("ncdu")) {
        candidates.push_back({"ncdu", command({"ncdu", "-0", "-o", "/dev/null", tree})});
    }
    if (isInstalled("gdu")) {
        candidates.push_back({"gdu", command({"gdu", "-n", "-p", "-s", tree})});
    }
    if (!cold) {
        bareWalk(tree, 4);
    }
    if (!(cold ? compareInTurns(candidates, 3, dropCaches) : compareInTurns(candidates, 5))) {
        std::printf("\n(caches cannot be dropped here: no cold runs)\n");
        return;
    }
    std::printf("\n%-28s %10s %14s %14s\n", cold ? "scan, cold, medians of 3" : "scan, warm, medians of 5", "ms",
                "ours / it", "peak, B/entry");
    print(candidates, static_cast<double>(files));
    const double ours = median(candidates[0].times);
    const unsigned cores = std::thread::hardware_concurrency();
    if (cold) {
        budget("scan, cold, beside du -s", ours, median(candidates[5].times), 0.35);
        budget("scan, cold, beside a bare walk with 8 threads", ours, median(candidates[4].times), 1.10);
    } else {
        const std::size_t bare = cores <= 1 ? 1 : cores <= 2 ? 2 : cores <= 4 ? 3 : 4;
        budget("scan, warm, beside a bare walk with a thread a core", ours, median(candidates[bare].times), 1.08);
        budget("scan, peak bytes a file", median(candidates[0].peaks) / static_cast<double>(files), 1, 80);
    }
}

void compareSizes(const std::string& tree) {
    UserFolderPaths paths;
    paths.home = FileURL(tree).deletingLastPathComponent().appendingPathComponent("no home");
    paths.systemRoot = paths.home;
    paths.music = FileURL(tree);
    compareWithDu(
        "kinds of a home", [&] { (void)StorageOverviewScanner::categories({}, paths); }, tree);
}

void compareJunk(const std::string& tree) {
    UserFolderPaths paths;
    paths.home = FileURL(tree + "/no home");
    paths.cacheHome = FileURL(tree);
    paths.stateHome = paths.dataHome = paths.configHome = paths.temporary = paths.home;
    const auto applications = std::make_shared<const DesktopApplications>(applicationFolders(paths));
    compareWithDu(
        "junk scan", [&] { (void)JunkScanner::scan(junkPlaces(paths), applications, {}); }, tree);
    // One folder holds everything.
    paths.cacheHome = FileURL(std::filesystem::path(tree).parent_path().string());
    compareWithDu(
        "junk scan of one folder", [&] { (void)JunkScanner::scan(junkPlaces(paths), applications, {}); },
        paths.cacheHome.path());
}

void compareChains(const std::string& base) {
    const std::string chain = base + "/chain-5000";
    makeChain(chain, 5000);
    std::vector<Candidate> candidates{
        {"FileScanner::scan", [&] { (void)FileScanner::scan(FileURL(chain), [](std::int64_t) {}); }},
        {"du -s", command({"du", "-s", chain})},
    };
    (void)compareInTurns(candidates, 9);
    std::printf("\n%-28s %10s %14s %14s\n", "chain of 5,000 folders", "ms", "ours / it", "peak, B/folder");
    print(candidates, 5000);
    budget("chain of 5,000 folders, beside du -s", median(candidates[0].times), median(candidates[1].times), 2);
}

void compareMemory(const std::string& tree) {
    const double before = residentBytes();
    const ScanResult result = FileScanner::scan(FileURL(tree), [](std::int64_t) {});
    const double kept = (residentBytes() - before) / static_cast<double>(result.files.size());
    std::printf("\nkept of %zu files: %.1f bytes each, search index included\n", result.files.size(), kept);
    budget("scan, kept bytes a file", kept, 1, 60);
}
