#include "SpaceScan/FileScanner.h"

#include "Foundation/CheckedSum.h"
#include "Foundation/Packages.h"
#include "SpaceScan/RecordSort.h"
#include "SpaceScan/ScanRecorder.h"

#include <memory>

namespace FileScanner {

ScanResult scan(const FileURL& root, const std::function<void(std::int64_t)>& progress, const std::stop_token& stop) {
    DirectoryWalk walk(
        root, [](std::string_view name) { return !isPackageName(name); }, stop);
    if (!walk.isOpen()) {
        return {{}, 1};
    }
    ScanProgress files(progressStep);
    const NameFolding folding{QLocale()};
    std::vector<std::unique_ptr<ScanRecorder>> recorders;
    std::vector<ScanRecorder*> borrowed;
    for (unsigned i = 0; i < DirectoryWalk::recommendedThreads(); ++i) {
        borrowed.push_back(recorders.emplace_back(std::make_unique<ScanRecorder>(files, folding)).get());
    }
    walk.start({borrowed.begin(), borrowed.end()}, [&files] { files.finish(); });
    for (std::uint64_t reported = 0;;) {
        const std::uint64_t complete = files.waitForStep(reported);
        if (complete == reported) {
            break;
        }
        while (reported < complete) {
            progress(static_cast<std::int64_t>(++reported) * progressStep);
        }
    }
    walk.join();

    ScanResult result;
    for (const ScanRecorder* recorder : borrowed) {
        result.skipped = checkedSum(result.skipped, recorder->skipped());
    }
    std::vector<std::uint32_t> numbers;
    FileList::Storage storage = ScanRecorder::gather(root, walk.root(), borrowed, numbers, result.skipped);
    const std::vector<std::uint32_t> order = sortBySizeDescending(storage.records);
    std::vector<std::uint32_t> keys(order.size());
    for (std::size_t place = 0; place < order.size(); ++place) {
        keys[numbers[order[place]]] = static_cast<std::uint32_t>(place);
    }
    storage.index.setKeys(std::move(keys));
    result.files = FileList(std::move(storage));
    return result;
}

}  // namespace FileScanner
