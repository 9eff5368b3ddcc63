// Compares the program with other ways to do the same, side by side on one tree, and with its budgets:
//     duskfern_compare FILES [FOLDER [PART...]]
// FOLDER is where the trees are kept between runs, beneath the build directory by default. With PARTs (scan, sizes,
// junk, chain, memory, search, parts, windows, cold) only these are compared.

#include "Comparisons.h"
#include "Measure.h"
#include "ReferenceTree.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <utility>
#include <vector>

int main(int argc, char** argv) {
    const std::int64_t files = argc > 1 ? std::atoll(argv[1]) : 100'000;
    const std::string base = argc > 2 ? argv[2] : DUSKFERN_BENCHMARK_ROOT;
    const std::string tree = base + "/reference-" + std::to_string(files) + "/tree";
    std::printf("tree of %lld files: %s\n", static_cast<long long>(files), tree.c_str());
    std::fflush(stdout);
    std::filesystem::create_directories(std::filesystem::path(tree).parent_path());
    makeReferenceTree(tree, files, 20'231);
    const std::string programs = std::filesystem::path(argv[0]).parent_path().string();
    const std::vector<std::string> wanted(argv + std::min(argc, 3), argv + argc);
    const std::pair<const char*, std::function<void()>> parts[] = {
        {"scan", [&] { compareScans(tree, files, false); }},
        {"sizes", [&] { compareSizes(tree); }},
        {"junk", [&] { compareJunk(tree); }},
        {"chain", [&] { compareChains(base); }},
        {"memory", [&] { compareMemory(tree); }},
        {"search", [&] { compareSearches(tree); }},
        {"parts", [&] { compareParts(tree); }},
        {"windows", [&] { compareWindows(programs, tree); }},
        {"cold", [&] { compareScans(tree, files, true); }},
    };
    for (const auto& [name, compare] : parts) {
        if (wanted.empty() || std::find(wanted.begin(), wanted.end(), name) != wanted.end()) {
            compare();
        }
    }
    printBudgets();
    return 0;
}
