#include "Desktop/XdgUserFolders.h"

#include "Desktop/GioSupport.h"

#include <cstdlib>

namespace {

std::optional<FileURL> named(GUserDirectory directory) {
    const char* const path = g_get_user_special_dir(directory);
    return path != nullptr && path[0] == '/' ? std::optional(FileURL(path)) : std::nullopt;
}

/// The folder that a variable names; a path that is not absolute names none.
FileURL fromEnvironment(const char* variable, const FileURL& fallback) {
    const char* const path = std::getenv(variable);
    return path != nullptr && path[0] == '/' ? FileURL(path) : fallback;
}

}  // namespace

UserFolderPaths XdgUserFolders::paths() {
    g_reload_user_special_dirs_cache();
    const char* const homePath = g_get_home_dir();
    const FileURL home(homePath != nullptr && homePath[0] == '/' ? homePath : "/");
    return {
        .home = home,
        .systemRoot = FileURL("/"),
        .music = named(G_USER_DIRECTORY_MUSIC),
        .videos = named(G_USER_DIRECTORY_VIDEOS),
        .pictures = named(G_USER_DIRECTORY_PICTURES),
        .documents = named(G_USER_DIRECTORY_DOCUMENTS),
        .desktop = named(G_USER_DIRECTORY_DESKTOP),
        .downloads = named(G_USER_DIRECTORY_DOWNLOAD),
        .cacheHome = fromEnvironment("XDG_CACHE_HOME", home.appendingPathComponent(".cache")),
        .stateHome = fromEnvironment("XDG_STATE_HOME", home.appendingPathComponent(".local/state")),
        .dataHome = fromEnvironment("XDG_DATA_HOME", home.appendingPathComponent(".local/share")),
        .configHome = fromEnvironment("XDG_CONFIG_HOME", home.appendingPathComponent(".config")),
        .temporary = fromEnvironment("TMPDIR", FileURL("/tmp")),
    };
}
