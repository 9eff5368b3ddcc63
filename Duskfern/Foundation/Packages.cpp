#include "Foundation/Packages.h"

#include "Foundation/FileExtension.h"

#include <algorithm>
#include <array>

namespace {

constexpr std::array<std::string_view, 21> packageExtensions{
    "app",       "appex",         "bundle",       "plugin",    "kext",        "photoslibrary", "musiclibrary",
    "tvlibrary", "imovielibrary", "fcpbundle",    "logicx",    "band",        "rtfd",          "pages",
    "numbers",   "key",           "sparsebundle", "xcodeproj", "xcworkspace", "playground",    "workflow",
};
constexpr std::size_t longestExtension = 13;

}  // namespace

bool isPackageName(std::string_view name) {
    const std::string extension = lowerCaseExtension(name, longestExtension);
    return std::find(packageExtensions.begin(), packageExtensions.end(), extension) != packageExtensions.end();
}
