#include "Foundation/CheckedSum.h"
#include "Foundation/Threads.h"
#include "SpaceScan/RecordSort.h"
#include "SpaceScan/ScanRecorder.h"

#include <algorithm>
#include <bit>
#include <functional>
#include <new>
#include <numeric>
#include <thread>
#include <utility>

namespace {

using Recorders = std::vector<ScanRecorder*>;

/// Consecutive files of one folder.
struct Run {
    const ScanRecorder* recorder;
    std::uint32_t firstFile;
    std::uint32_t endFile;
    std::uint32_t folder;  ///< Index into `FileList::Storage::folders`.
};

/// All files below `root` in the order of a depth-first walk. Fills `all.folders`.
std::vector<Run> runsBelow(const ScanRecorder::Folder& root, FileList::Storage& all) {
    /// The stack holds the path to the current folder.
    struct OpenFolder {
        const ScanRecorder::Listing* listing;
        std::uint32_t folder;
        std::uint32_t nextFile;
        std::uint32_t nextFolder;
    };
    std::vector<OpenFolder> open;
    std::vector<Run> runs;
    const auto enter = [&](const ScanRecorder::Folder& folder, std::uint32_t parent, std::uint32_t namesBase) {
        // A folder that was not listed, because the walk was stopped, has no contents.
        if (const ScanRecorder::Listing* const listing = folder.contents) {
            open.push_back(
                {listing, static_cast<std::uint32_t>(all.folders.size()), listing->firstFile, listing->firstFolder});
            all.folders.push_back({parent, namesBase + folder.name});
        }
    };
    enter(root, 0, 0);
    while (!open.empty()) {
        OpenFolder& here = open.back();
        const ScanRecorder& recorder = *here.listing->recorder;
        const ScanRecorder::Folder* const child =
            here.nextFolder < here.listing->endFolder ? &recorder.folders[here.nextFolder] : nullptr;
        const std::uint32_t end = child != nullptr ? child->filesBefore : here.listing->endFile;
        if (here.nextFile < end) {
            runs.push_back({&recorder, std::exchange(here.nextFile, end), end, here.folder});
        }
        if (child == nullptr) {
            open.pop_back();
        } else {
            ++here.nextFolder;
            enter(*child, here.folder, recorder.folderNamesBase);
        }
    }
    return runs;
}

/// The sizes of the files of all recorders, by number.
class Sizes {
public:
    explicit Sizes(const Recorders& recorders) : m_recorders(recorders) {}

    [[nodiscard]] const FileSize& operator[](std::uint32_t number) const {
        const auto recorder = std::upper_bound(m_recorders.begin(), m_recorders.end(), number,
                                               [](std::uint32_t wanted, const ScanRecorder* other) {
                                                   return wanted < other->firstNumber;
                                               }) -
                              1;
        return (*recorder)->sizes[number - (*recorder)->firstNumber];
    }

private:
    const Recorders& m_recorders;
};

/// The files of a list in its order.
struct Order {
    std::vector<SortKey> keys;
    unsigned unit = 0;    ///< The sizes in `keys` are in units of 2^unit bytes,
    bool isExact = true;  ///< unless they do not fit and mean nothing.
};

/// Sorts the files of `runs`, which are in the order of the walk.
Order sorted(const std::vector<Run>& runs, const Recorders& recorders) {
    std::uint64_t bits = 0;
    std::size_t count = 0;
    for (const ScanRecorder* const recorder : recorders) {
        bits |= recorder->sizeBits;
        count += recorder->sizes.size();
    }
    // Sizes are nearly always multiples of a block, so that in units of that 32 bits are enough for 16 TiB.
    Order order;
    order.unit = static_cast<unsigned>(bits == 0 ? 0 : std::countr_zero(bits));
    order.isExact = (bits >> order.unit) >> 32 == 0;
    order.keys.reserve(count);
    for (const Run& run : runs) {
        for (std::uint32_t file = run.firstFile; file < run.endFile; ++file) {
            order.keys.push_back({static_cast<std::uint32_t>(run.recorder->sizes[file].bytes >> order.unit),
                                  run.recorder->firstNumber + file});
        }
    }
    if (order.isExact) {
        sortBySizeDescending(order.keys, static_cast<std::uint32_t>(bits >> order.unit));
    } else {
        const Sizes sizes(recorders);
        std::stable_sort(order.keys.begin(), order.keys.end(), [&](const SortKey& a, const SortKey& b) {
            return sizes[a.number].bytes > sizes[b.number].bytes;
        });
    }
    return order;
}

/// The folder and category of a file in 32 bits: more folders than fit 29 would not fit into memory.
constexpr unsigned categoryBits = 3;
constexpr std::uint32_t categoryMask = (1U << categoryBits) - 1;

constexpr std::uint32_t placeOf(std::uint32_t folder, std::uint32_t category) {
    return folder << categoryBits | category;
}

/// The place of each file, by number.
std::vector<std::uint32_t> placesOf(const std::vector<Run>& runs, std::size_t count) {
    std::vector<std::uint32_t> places(count);
    for (const Run& run : runs) {
        std::uint32_t number = run.recorder->firstNumber + run.firstFile;
        for (std::uint32_t file = run.firstFile; file < run.endFile; ++file) {
            places[number++] = placeOf(run.folder, static_cast<std::uint32_t>(run.recorder->sizes[file].category));
        }
    }
    return places;
}

/// Calls `work` with consecutive ranges of the numbers below `count`, one for each core at the same time.
void forRanges(std::size_t count, const std::function<void(std::size_t begin, std::size_t end)>& work) {
    // Bit sets are shared by ranges that begin at multiples of 64.
    const std::size_t ranges = std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, 8);
    const std::size_t length = (count / ranges / 64 + 1) * 64;
    Threads::runAll(ranges, [&](std::size_t range) {
        const std::size_t begin = std::min(count, range * length);
        work(begin, std::min(count, begin + length));
    });
}

}  // namespace

FileList mergedFiles(const FileURL& url, const ScanRecorder::Folder& root, const Recorders& recorders,
                     std::int64_t& skipped) {
    FileList::Storage all;
    all.root = url;
    for (ScanRecorder* const recorder : recorders) {
        if (!all.folderNames.fits(recorder->folderNames)) {
            throw std::bad_alloc();
        }
        recorder->firstNumber = all.index.add(std::move(recorder->names));
        recorder->folderNamesBase = all.folderNames.absorb(std::move(recorder->folderNames));
    }
    const std::size_t count = all.index.size();
    std::vector<Run> runs = runsBelow(root, all);
    // In memory that will hold the key of each number: the place is needed just until then.
    all.keys = placesOf(runs, count);
    const Order order = sorted(runs, recorders);
    skipped = checkedSum(skipped, static_cast<std::int64_t>(count - order.keys.size()));
    runs = {};
    for (ScanRecorder* const recorder : recorders) {
        recorder->folders = {};
        if (order.isExact) {
            recorder->sizes = {};
        }
    }
    const Sizes sizes(recorders);
    all.categories.fill(BitSet(count));
    forRanges(count, [&](std::size_t begin, std::size_t end) {
        for (std::size_t number = begin; number < end; ++number) {
            all.categories.at(all.keys[number] & categoryMask).insert(static_cast<std::uint32_t>(number));
        }
    });
    all.records.resize(order.keys.size());
    forRanges(order.keys.size(), [&](std::size_t begin, std::size_t end) {
        for (std::size_t key = begin; key < end; ++key) {
            const auto [size, number] = order.keys[key];
            const std::uint32_t place = std::exchange(all.keys[number], static_cast<std::uint32_t>(key));
            const std::uint64_t bytes = order.isExact ? std::uint64_t{size} << order.unit : sizes[number].bytes;
            FileRecord& record = all.records[key];
            record.size.bytes = bytes & FileSize::maximum;
            record.size.category = place & categoryMask;
            record.number = number;
            record.folder = place >> categoryBits;
        }
    });
    all.totalSize = std::accumulate(all.records.begin(), all.records.end(), std::int64_t{0},
                                    [](std::int64_t sum, const FileRecord& record) {
                                        return checkedSum(sum, static_cast<std::int64_t>(record.size.bytes));
                                    });
    return FileList(std::move(all));
}
