#include "Trash/TrashHome.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace {

std::optional<FileURL> fromEnvironment(const char* variable) {
    const char* const path = std::getenv(variable);
    return path != nullptr && path[0] == '/' ? std::optional(FileURL(path)) : std::nullopt;
}

FileURL registeredHome() {
    std::array<char, 4096> buffer{};
    passwd entry{};
    passwd* found = nullptr;
    const bool isKnown = getpwuid_r(geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found != nullptr;
    return FileURL(isKnown && entry.pw_dir != nullptr && entry.pw_dir[0] == '/' ? entry.pw_dir : "/");
}

}  // namespace

TrashHome TrashHome::ofUser() {
    const std::optional<FileURL> home = fromEnvironment("HOME");
    TrashHome result;
    result.home = home ? *home : registeredHome();
    result.dataHome = fromEnvironment("XDG_DATA_HOME").value_or(result.home.appendingPathComponent(".local/share"));
    return result;
}
