#include "Desktop/UserDirs.h"
#include "Input.h"

void use(std::string_view text) {
    UserFolderPaths paths;
    paths.home = FileURL("/home/ana");
    setNamedFolders(text, paths);
    for (const auto& folder :
         {paths.music, paths.videos, paths.pictures, paths.documents, paths.desktop, paths.downloads}) {
        require(!folder || (folder->path().starts_with('/') && *folder != paths.home &&
                            folder->path().find('\0') == std::string::npos));
    }
}
