#include "Desktop/XdgUserFolders.h"

#include "Desktop/GioSupport.h"

namespace {

std::optional<FileURL> named(GUserDirectory directory) {
    const char* const path = g_get_user_special_dir(directory);
    return path != nullptr && path[0] == '/' ? std::optional(FileURL(path)) : std::nullopt;
}

}  // namespace

UserFolderPaths XdgUserFolders::paths() {
    g_reload_user_special_dirs_cache();
    const char* const home = g_get_home_dir();
    return {
        .home = FileURL(home != nullptr && home[0] == '/' ? home : "/"),
        .systemRoot = FileURL("/"),
        .music = named(G_USER_DIRECTORY_MUSIC),
        .videos = named(G_USER_DIRECTORY_VIDEOS),
        .pictures = named(G_USER_DIRECTORY_PICTURES),
        .documents = named(G_USER_DIRECTORY_DOCUMENTS),
        .desktop = named(G_USER_DIRECTORY_DESKTOP),
        .downloads = named(G_USER_DIRECTORY_DOWNLOAD),
    };
}
