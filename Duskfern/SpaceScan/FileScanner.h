#pragma once

#include "Foundation/LateAnswer.h"
#include "SpaceScan/FileList.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>

/// The result of a scan.
struct ScanResult {
    FileList files;            ///< Every accepted file, largest first.
    std::int64_t skipped = 0;  ///< Entries that could not be examined.

    /// Null unless something was skipped after a timeout.
    std::shared_ptr<LateAnswer> lateAnswer;
};

/// Collects the files of a folder tree. Stateless; may run on any thread.
namespace FileScanner {

/// `progress` is called once per this many files.
inline constexpr std::int64_t progressStep = 250;

/// All regular files below `root`, without hidden ones and the contents of packages, largest first. Files of equal size
/// are in the order of a depth-first walk, whatever the number of threads. `progress` is called on this thread with
/// each multiple of `progressStep` that the number of files reaches, once each, ascending. A root that cannot be opened
/// as a folder gives no files and one skipped entry. `stop` ends the scan early, with the files found so far.
[[nodiscard]] ScanResult scan(const FileURL& root, const std::function<void(std::int64_t)>& progress,
                              const std::stop_token& stop = {});

}  // namespace FileScanner
