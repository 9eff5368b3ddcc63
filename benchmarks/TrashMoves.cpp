// Moves many things to a Trash, and the same with `gio trash`:
//     duskfern_trash FILES [FOLDER]
// FOLDER is where the things are made, beneath the build directory by default.

#include "Measure.h"

#include "Trash/FreedesktopTrash.h"

#include <unistd.h>

#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iostream>
#include <span>

namespace {

namespace fs = std::filesystem;

struct Case {
    const char* what;
    std::function<std::vector<std::string>(const fs::path& home)> make;
    bool isForGio;  ///< It takes minutes for thousands of one name.
};

std::vector<std::string> makeFiles(const fs::path& home, int count, const std::function<std::string(int)>& name) {
    std::vector<std::string> paths;
    for (int i = 0; i < count; ++i) {
        const fs::path folder = home / "in" / std::to_string(i);
        fs::create_directories(folder);
        paths.push_back((folder / name(i)).string());
        std::ofstream(paths.back()) << "x";
    }
    return paths;
}

double measured(const std::function<void()>& run) {
    sync();
    const Clock::time_point start = Clock::now();
    run();
    return inMilliseconds(Clock::now() - start);
}

void moveAll(const fs::path& home, const std::vector<std::string>& paths) {
    FreedesktopTrash trash({FileURL(home.string()), FileURL((home / "data").string())});
    for (const std::string& path : paths) {
        const FileURL url(path);
        if (trash.move(url, fileStatus(url)->identity)) {
            std::cerr << "not moved: " << path << '\n';
            std::exit(1);
        }
    }
}

void moveAllWithGio(const fs::path& home, const std::vector<std::string>& paths) {
    {
        std::ofstream list(home / "list");
        for (const std::string& path : paths) {
            list << path << '\n';
        }
    }
    const std::string command = "cd '" + home.string() +
                                R"(' && HOME="$PWD" XDG_DATA_HOME="$PWD/data" GIO_USE_VFS=local )" +
                                R"(xargs -a list -d '\n' gio trash)";
    if (std::system(command.c_str()) != 0) {  // NOLINT(cert-env33-c)
        std::cerr << "gio failed\n";
        std::exit(1);
    }
}

/// Milliseconds of each round, one list per case.
using Times = std::vector<std::vector<double>>;

/// Runs ours and that of GIO alternately, because other programs may use the disk meanwhile.
void race(std::span<const Case> cases, const fs::path& base, Times& ours, Times& gio) {
    constexpr int rounds = 3;
    ours.resize(cases.size());
    gio.resize(cases.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < cases.size(); ++i) {
            for (const bool isGio : {false, true}) {
                if (isGio && (!cases[i].isForGio || !isInstalled("gio"))) {
                    continue;
                }
                fs::remove_all(base);
                const std::vector<std::string> paths = cases[i].make(base);
                const double time = measured([&] { (isGio ? moveAllWithGio : moveAll)(base, paths); });
                (isGio ? gio : ours)[i].push_back(time);
            }
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    const int files = argc > 1 ? std::atoi(argv[1]) : 10'000;
    const fs::path base = fs::path(argc > 2 ? argv[2] : DUSKFERN_BENCHMARK_ROOT) / "trash";
    const Case cases[] = {
        {"different names",
         [=](const fs::path& home) {
             return makeFiles(home, files, [](int i) { return "foto-" + std::to_string(i) + ".jpg"; });
         },
         true},
        {"one name",
         [=](const fs::path& home) { return makeFiles(home, files, [](int) { return std::string("foto.jpg"); }); },
         false},
        {"one folder of ten times as many files",
         [=](const fs::path& home) {
             fs::create_directories(home / "folder");
             for (int i = 0; i < files * 10; ++i) {
                 std::ofstream(home / "folder" / std::to_string(i)).flush();
             }
             return std::vector{(home / "folder").string()};
         },
         true},
    };
    Times ours;
    Times gio;
    race(cases, base, ours, gio);
    std::printf("%-40s %10s %10s\n", "moved to the trash, ms", "ours", "gio");
    for (std::size_t i = 0; i < std::size(cases); ++i) {
        std::printf("%-40s %10.0f %10s\n", cases[i].what, median(ours[i]),
                    gio[i].empty() ? "-" : std::to_string(std::lround(median(gio[i]))).c_str());
    }
    fs::remove_all(base);
    budget("moves of one name beside moves of different names", median(ours[1]), median(ours[0]), 2);
    printBudgets();
    return 0;
}
