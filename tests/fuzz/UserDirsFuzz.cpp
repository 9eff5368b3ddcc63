#include "Desktop/UserDirs.h"
#include "Input.h"

// The name is libFuzzer's.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    UserFolderPaths paths;
    paths.home = FileURL("/home/ana");
    setNamedFolders(textOf(data, size), paths);
    for (const auto& folder :
         {paths.music, paths.videos, paths.pictures, paths.documents, paths.desktop, paths.downloads}) {
        require(!folder || (folder->path().starts_with('/') && *folder != paths.home &&
                            folder->path().find('\0') == std::string::npos));
    }
    return 0;
}
