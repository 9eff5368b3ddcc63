#include "Desktop/XdgUserFolders.h"

#include "Desktop/GioSupport.h"
#include "Desktop/UserDirs.h"
#include "Foundation/DiskRequests.h"
#include "Foundation/Handover.h"
#include "Foundation/SmallFile.h"

#include <fcntl.h>

#include <cstdlib>
#include <memory>

namespace {

/// Limit of `user-dirs.dirs` in bytes; real ones have six lines.
constexpr std::size_t maximumUserDirs = 65'536;

/// The folder in an environment variable; `fallback` unless it is an absolute path.
FileURL fromVariable(const char* variable, const FileURL& fallback) {
    const char* const path = std::getenv(variable);
    return path != nullptr && path[0] == '/' ? FileURL(path) : fallback;
}

}  // namespace

UserFolderPaths XdgUserFolders::fromEnvironment() {
    // Accesses no disk if HOME is set; otherwise GLib does once and caches the result.
    const char* const homePath = g_get_home_dir();
    const FileURL home(homePath != nullptr && homePath[0] == '/' ? homePath : "/");
    UserFolderPaths paths;
    paths.home = home;
    paths.systemRoot = FileURL("/");
    paths.desktop = home.appendingPathComponent("Desktop");
    paths.cacheHome = fromVariable("XDG_CACHE_HOME", home.appendingPathComponent(".cache"));
    paths.stateHome = fromVariable("XDG_STATE_HOME", home.appendingPathComponent(".local/state"));
    paths.dataHome = fromVariable("XDG_DATA_HOME", home.appendingPathComponent(".local/share"));
    paths.configHome = fromVariable("XDG_CONFIG_HOME", home.appendingPathComponent(".config"));
    paths.temporary = fromVariable("TMPDIR", FileURL("/tmp"));
    return paths;
}

UserFolderPaths XdgUserFolders::paths() {
    UserFolderPaths paths = fromEnvironment();
    const auto userDirs = std::make_shared<Handover<std::string>>();
    DiskRequests request;
    request.start([userDirs, file = paths.configHome.appendingPathComponent("user-dirs.dirs").path()] {
        if (auto text = readSmallFile(AT_FDCWD, file.c_str(), maximumUserDirs)) {
            userDirs->edit([&](std::string& value) { value = std::move(*text); });
        }
    });
    static_cast<void>(request.wait());
    setNamedFolders(userDirs->take(), paths);
    return paths;
}
