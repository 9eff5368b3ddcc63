#pragma once

#include "Foundation/FileURL.h"
#include "SpaceScan/FileCategory.h"

#include <string_view>

/// Assigns categories by the extension of a name. Touches no file.
namespace FileClassifier {

/// The category of a file name, given as its bytes; never `all`.
[[nodiscard]] FileCategory categoryForName(std::string_view name);

[[nodiscard]] inline FileCategory category(const FileURL& url) {
    return categoryForName(url.lastPathComponent());
}

}  // namespace FileClassifier
