#include "BareWalk.h"
#include "Comparisons.h"
#include "Measure.h"

#include "Desktop/DesktopApplications.h"
#include "Foundation/FolderSizes.h"
#include "JunkCleaner/JunkScanner.h"
#include "SpaceScan/FileScanner.h"

#include <malloc.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>

namespace {

void print(const std::vector<Candidate>& candidates, double files) {
    const double ours = median(candidates.front().times);
    for (const Candidate& candidate : candidates) {
        const double time = median(candidate.times);
        std::printf("%-28s %10.0f %14.2f %14.0f\n", candidate.name.c_str(), time, ours / time,
                    median(candidate.peaks) / files);
    }
}

/// A way to measure the size of a tree, with `du` as the limit.
void compareWithDu(const std::string& name, const std::function<void()>& run, const std::string& tree,
                   const std::string& what) {
    std::vector<Candidate> candidates{{name, run}, {"du -s", command({"du", "-s", tree})}};
    (void)compareInTurns(candidates, 5);
    std::printf("\n%-28s %10s %14s %14s\n", "one folder, medians of 5", "ms", "ours / it", "peak, bytes");
    print(candidates, 1);
    budget(what, median(candidates[0].times), median(candidates[1].times), 1);
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
    const std::string kind = cold ? "scan, cold" : "scan, warm";
    budget(kind + ", beside du -s", ours, median(candidates[5].times), cold ? 0.45 : 0.5);
    if (!cold) {
        budget(kind + ", beside a bare walk on 2 threads", ours, median(candidates[2].times), 1.15);
        budget("scan, peak bytes an entry", median(candidates[0].peaks) / static_cast<double>(files), 1, 110);
    }
}

void compareSizes(const std::string& tree) {
    const auto all = [](std::string_view) { return true; };
    compareWithDu(
        "folderSizes", [&] { (void)folderSizes({{FileURL(tree)}}, all); }, tree, "size of a folder, beside du -s");
}

void compareJunk(const std::string& tree) {
    UserFolderPaths paths;
    paths.home = FileURL(tree + "/no home");
    paths.cacheHome = FileURL(tree);
    paths.stateHome = paths.dataHome = paths.configHome = paths.temporary = paths.home;
    const auto applications = std::make_shared<const DesktopApplications>(applicationFolders(paths));
    compareWithDu(
        "JunkScanner::scan", [&] { (void)JunkScanner::scan(junkPlaces(paths), applications, {}); }, tree,
        "junk scan, beside du -s");
}

void compareMemory(const std::string& tree) {
    const double before = residentBytes();
    const ScanResult result = FileScanner::scan(FileURL(tree), [](std::int64_t) {});
    const double kept = (residentBytes() - before) / static_cast<double>(result.files.size());
    std::printf("\nkept of %zu files: %.1f bytes each, search index included\n", result.files.size(), kept);
    budget("scan, kept bytes a file", kept, 1, 75);
}
