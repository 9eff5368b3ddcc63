// Compares the program with other ways to do the same, side by side on one tree, and with its budgets:
//     duskfern_compare FILES [FOLDER]
// FOLDER is where the tree is kept between runs, beneath the build directory by default.

#include "Comparisons.h"
#include "Measure.h"
#include "ReferenceTree.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>

int main(int argc, char** argv) {
    const std::int64_t files = argc > 1 ? std::atoll(argv[1]) : 100'000;
    const std::string base = argc > 2 ? argv[2] : DUSKFERN_BENCHMARK_ROOT;
    const std::string tree = base + "/tree-" + std::to_string(files);
    std::printf("tree of %lld files: %s\n", static_cast<long long>(files), tree.c_str());
    std::fflush(stdout);
    std::filesystem::create_directories(base);
    makeReferenceTree(tree, files, 20'231);
    compareScans(tree, files, false);
    compareSizes(tree);
    compareJunk(tree);
    compareMemory(tree);
    compareSearches(tree);
    compareSorts(tree);
    compareWindows(std::filesystem::path(argv[0]).parent_path().string(), tree);
    compareScans(tree, files, true);
    printBudgets();
    return 0;
}
