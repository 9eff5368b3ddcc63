#pragma once

#include "Foundation/FileURL.h"
#include "SpaceScan/FileCategory.h"

#include <string_view>

/// Assigns categories by file name extension. Does not access the disk.
namespace FileClassifier {

/// The category of a file name given as bytes; never `all`.
[[nodiscard]] FileCategory categoryForName(std::string_view name);

[[nodiscard]] inline FileCategory category(const FileURL& url) {
    return categoryForName(url.lastPathComponent());
}

}  // namespace FileClassifier
