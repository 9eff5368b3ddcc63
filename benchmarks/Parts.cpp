#include "Comparisons.h"
#include "Measure.h"

#include "Foundation/ChunkedVector.h"
#include "Foundation/StringArena.h"
#include "SpaceScan/FileScanner.h"
#include "SpaceScan/RecordSort.h"
#include "SpaceScan/SearchIndex.h"

#include <malloc.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <deque>
#include <string_view>
#include <thread>

namespace {

/// What the two workers of a scan would have found.
using Halves = std::array<std::vector<std::string>, 2>;

/// Calls the function for each half, on a thread of its own.
template <class Work>
void forBoth(const Work& work) {
    std::thread other([&] { work(1); });
    work(0);
    other.join();
}

void printRows(const char* title, const std::vector<Candidate>& candidates, double names) {
    std::printf("\n%-44s %8s %12s %14s\n", title, "ms", "ours / it", "peak, B/name");
    const double ours = median(candidates.front().times);
    for (const Candidate& candidate : candidates) {
        const double time = median(candidate.times);
        std::printf("%-44s %8.1f %12.2f %14.1f\n", candidate.name.c_str(), time, ours / time,
                    median(candidate.peaks) / names);
    }
}

/// Names and sizes, as they come, two threads at a time.
void compareRecording(const Halves& halves, double names) {
    const auto record = [&halves](const auto& begin) {
        forBoth([&](std::size_t half) {
            auto add = begin();
            for (const std::string& name : halves[half]) {
                add(name);
            }
        });
    };
    std::vector<Candidate> candidates{
        {"StringArena, ChunkedVector",
         [&] {
             record([] {
                 return
                     [arena = StringArena(), sizes = ChunkedVector<std::int64_t>()](const std::string& name) mutable {
                         (void)arena.append(name);
                         sizes.append(std::int64_t{1});
                     };
             });
         }},
        {"std::string, std::vector",
         [&] {
             record([] {
                 return [text = std::string(), sizes = std::vector<std::int64_t>()](const std::string& name) mutable {
                     text.append(name).push_back('\0');
                     sizes.push_back(1);
                 };
             });
         }},
        {"std::deque<char>, std::deque",
         [&] {
             record([] {
                 return
                     [text = std::deque<char>(), sizes = std::deque<std::int64_t>()](const std::string& name) mutable {
                         text.insert(text.end(), name.begin(), name.end());
                         text.push_back('\0');
                         sizes.push_back(1);
                     };
             });
         }},
        {"std::vector<std::string>, std::vector",
         [&] {
             record([] {
                 return [texts = std::vector<std::string>(),
                         sizes = std::vector<std::int64_t>()](const std::string& name) mutable {
                     texts.push_back(name);
                     sizes.push_back(1);
                 };
             });
         }},
    };
    (void)compareInTurns(candidates, 5);
    printRows("names and sizes recorded, medians of 5", candidates, names);
}

/// The names in which the C library's own search finds a text.
std::size_t countByMemmem(std::string_view texts, std::string_view wanted) {
    std::size_t hits = 0;
    while (!texts.empty()) {
        const void* const found = memmem(texts.data(), texts.size(), wanted.data(), wanted.size());
        if (found == nullptr) {
            break;
        }
        ++hits;
        texts.remove_prefix(static_cast<std::size_t>(static_cast<const char*>(found) - texts.data()));
        texts.remove_prefix(std::min(texts.size(), texts.find('\0')));
    }
    return hits;
}

void compareTextSearch(const Halves& halves) {
    SearchIndex index;
    std::array<std::string, 2> texts;
    for (std::size_t half = 0; half < 2; ++half) {
        SearchableNames names;
        for (const std::string& name : halves[half]) {
            names.names.append(name);
            texts[half].append(name).push_back('\0');
        }
        (void)index.add(std::move(names));
    }
    std::printf("\n%-44s %8s %12s %14s\n", "names searched, medians of 9, ms", "ours", "memmem", "hits");
    for (const char* wanted : {"a", "foto", "zzzzzzzz"}) {
        std::vector<double> ours;
        std::vector<double> library;
        std::array<std::size_t, 2> hits{};
        for (int round = 0; round < 9; ++round) {
            Clock::time_point start = Clock::now();
            (void)index.search(wanted);
            ours.push_back(inMilliseconds(Clock::now() - start));
            start = Clock::now();
            forBoth([&](std::size_t half) { hits[half] = countByMemmem(texts[half], wanted); });
            library.push_back(inMilliseconds(Clock::now() - start));
        }
        std::printf("%-44s %8.2f %12.2f %14zu\n", wanted, median(ours), median(library), hits[0] + hits[1]);
    }
}

void compareSorts(const FileList& files) {
    std::vector<SortKey> keys;
    std::uint32_t bits = 0;
    for (std::uint32_t number = 0; number < files.size(); ++number) {
        // In the order in which they were found.
        keys.push_back(
            {static_cast<std::uint32_t>(files.sizeAt(files.indexOfKey(files.keyOfNumber(number))) >> 12), number});
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

}  // namespace

void compareParts(const std::string& tree) {
    const FileList files = FileScanner::scan(FileURL(tree), [](std::int64_t) {}).files;
    Halves halves;
    for (std::size_t index = 0; index < files.size(); ++index) {
        halves[index % 2].emplace_back(files.nameAt(index));
    }
    malloc_trim(0);
    compareRecording(halves, static_cast<double>(files.size()));
    compareTextSearch(halves);
    compareSorts(files);
}
