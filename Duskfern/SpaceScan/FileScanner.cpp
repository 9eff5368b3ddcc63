#include "SpaceScan/FileScanner.h"

#include "Foundation/CheckedSum.h"
#include "Foundation/Packages.h"
#include "SpaceScan/ScanRecorder.h"

#include <functional>
#include <memory>
#include <new>

namespace FileScanner {

namespace {

using Recorders = std::vector<std::unique_ptr<ScanRecorder>>;

/// Calls `progress` for each multiple of `progressStep` reached since the last call of `report()`.
class StepReporter {
public:
    StepReporter(const Recorders& recorders, const std::function<void(std::int64_t)>& progress)
        : m_recorders(recorders), m_progress(progress) {}

    void report() {
        std::int64_t count = 0;
        for (const auto& recorder : m_recorders) {
            count += recorder->count();
        }
        while (m_reported + progressStep <= count) {
            m_reported += progressStep;
            m_progress(m_reported);
        }
    }

private:
    const Recorders& m_recorders;
    const std::function<void(std::int64_t)>& m_progress;
    std::int64_t m_reported = 0;
};

}  // namespace

ScanResult scan(const FileURL& root, const std::function<void(std::int64_t)>& progress, const std::stop_token& stop) {
    const NameFolding folding{QLocale()};
    Recorders recorders;
    std::vector<ScanRecorder*> borrowed;
    for (unsigned i = 0; i < DirectoryWalk::maximumWorkers(); ++i) {
        borrowed.push_back(recorders.emplace_back(std::make_unique<ScanRecorder>(folding)).get());
    }
    DirectoryWalk walk(
        {{root}}, [](std::string_view name) { return !isPackageName(name); }, stop);
    ScanRecorder::Folder top;
    walk.setTag(0, &top);
    StepReporter steps(recorders, progress);
    walk.run({borrowed.begin(), borrowed.end()}, [&steps] { steps.report(); });
    steps.report();
    if (!walk.wasOpened(0)) {
        return {{}, 1, walk.lateAnswer()};
    }

    ScanResult result;
    for (const ScanRecorder* recorder : borrowed) {
        result.skipped = checkedSum(result.skipped, recorder->skipped());
    }
    result.lateAnswer = walk.lateAnswer();
    try {
        result.files = mergedFiles(root, top, borrowed, result.skipped);
    } catch (const std::bad_alloc&) {
        // There is no memory for the merged list: all files count as skipped.
        for (const ScanRecorder* recorder : borrowed) {
            result.skipped = checkedSum(result.skipped, recorder->count());
        }
    }
    return result;
}

}  // namespace FileScanner
