#include "Desktop/UserDirs.h"

#include <algorithm>
#include <string>

namespace {

struct Purpose {
    std::string_view variable;
    std::optional<FileURL> UserFolderPaths::*folder;
};

constexpr Purpose purposes[] = {
    {"XDG_MUSIC_DIR", &UserFolderPaths::music},       {"XDG_VIDEOS_DIR", &UserFolderPaths::videos},
    {"XDG_PICTURES_DIR", &UserFolderPaths::pictures}, {"XDG_DOCUMENTS_DIR", &UserFolderPaths::documents},
    {"XDG_DESKTOP_DIR", &UserFolderPaths::desktop},   {"XDG_DOWNLOAD_DIR", &UserFolderPaths::downloads},
};

std::string_view trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t\r";
    const std::size_t first = text.find_first_not_of(blanks);
    return first == std::string_view::npos ? std::string_view()
                                           : text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

/// The quoted string at the beginning, with backslash escapes resolved; nothing if its end is missing.
std::optional<std::string> unquoted(std::string_view text) {
    if (text.empty() || text.front() != '"') {
        return std::nullopt;
    }
    std::string value;
    for (std::size_t i = 1; i < text.size() && text[i] != '"'; ++i) {
        if (text[i] == '\\' && ++i == text.size()) {
            return std::nullopt;
        }
        value += text[i];
        if (i + 1 == text.size()) {
            return std::nullopt;
        }
    }
    return value;
}

/// The folder in a value; nothing if it is not absolute or is the home itself.
std::optional<FileURL> folderOf(std::string value, const FileURL& home) {
    constexpr std::string_view inHome = "$HOME";
    if (value.starts_with(inHome) && (value.size() == inHome.size() || value[inHome.size()] == '/')) {
        value.replace(0, inHome.size(), home.path());
    }
    while (value.size() > 1 && value.back() == '/') {
        value.pop_back();
    }
    if (value.empty() || value.front() != '/' || value == home.path() || value.find('\0') != std::string::npos) {
        return std::nullopt;
    }
    return FileURL(value);
}

}  // namespace

void setNamedFolders(std::string_view userDirs, UserFolderPaths& paths) {
    while (!userDirs.empty()) {
        const std::size_t end = std::min(userDirs.find('\n'), userDirs.size());
        const std::string_view line = userDirs.substr(0, end);
        userDirs.remove_prefix(std::min(end + 1, userDirs.size()));
        const std::size_t equals = std::min(line.find('='), line.size());
        const auto* const purpose =
            std::find_if(std::begin(purposes), std::end(purposes),
                         [name = trimmed(line.substr(0, equals))](const Purpose& row) { return row.variable == name; });
        if (purpose == std::end(purposes) || equals == line.size()) {
            continue;
        }
        if (const std::optional<std::string> value = unquoted(trimmed(line.substr(equals + 1)))) {
            paths.*purpose->folder = folderOf(*value, paths.home);
        }
    }
}
