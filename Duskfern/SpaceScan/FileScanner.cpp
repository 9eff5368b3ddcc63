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
    std::vector<std::unique_ptr<ScanRecorder>> recorders;
    std::vector<ScanRecorder*> borrowed;
    for (unsigned i = 0; i < DirectoryWalk::recommendedThreads(); ++i) {
        borrowed.push_back(recorders.emplace_back(std::make_unique<ScanRecorder>(files)).get());
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
    FileList::Storage storage = ScanRecorder::gather(root, walk.root(), borrowed, result.skipped);
    sortBySizeDescending(storage.records);
    result.files = FileList(std::move(storage));
    return result;
}

}  // namespace FileScanner
