#pragma once

#include "Foundation/DiskPatience.h"
#include "SpaceScan/FileList.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>

/// What a scan found.
struct ScanResult {
    FileList files;            ///< Every accepted file, largest first.
    std::int64_t skipped = 0;  ///< Entries that could not be examined.

    /// Null unless something did not answer and was passed over.
    std::shared_ptr<LateAnswer> lateAnswer;
};

/// Walks a folder for its files. Holds no state; may run on any thread.
namespace FileScanner {

/// Files are reported in steps of this many.
inline constexpr std::int64_t progressStep = 250;

/// All regular files below `root`, without hidden ones and the contents of packages, largest first; files of equal
/// size in the order in which a walk from folder to folder meets them, whatever the number of threads at work.
/// `progress` is called on this thread with each multiple of `progressStep` that the number of files reaches, once
/// each, ascending. A root that cannot be opened as a folder gives no files and one skipped entry. `stop` ends the
/// scan early, with whatever it has, because nobody waits for it any more.
[[nodiscard]] ScanResult scan(const FileURL& root, const std::function<void(std::int64_t)>& progress,
                              const std::stop_token& stop = {});

}  // namespace FileScanner
