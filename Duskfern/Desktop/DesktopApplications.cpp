#include "Desktop/DesktopApplications.h"

#include "Desktop/DesktopEntry.h"
#include "Desktop/InstalledGames.h"
#include "Desktop/PropertyList.h"
#include "Foundation/Descriptor.h"
#include "Foundation/DiskRequests.h"
#include "Foundation/SmallFile.h"

#include <dirent.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <functional>
#include <memory>

namespace {

/// More than any real desktop entry or property list.
constexpr std::size_t sizeLimit = std::size_t{1} << 20;

/// How deep menu folders are searched.
constexpr int depthLimit = 4;

constexpr std::string_view entrySuffix = ".desktop";
constexpr std::string_view bundleSuffix = ".app";

struct CloseFolder {
    void operator()(DIR* folder) const { closedir(folder); }
};

/// Calls `use` with the name of each entry of a folder, and whether it is or may be a folder.
void forEachEntry(const FileURL& folder, InstalledNames& names,
                  const std::function<void(std::string_view name, bool mayBeFolder)>& use) {
    const std::unique_ptr<DIR, CloseFolder> listing(opendir(folder.path().c_str()));
    names.isComplete = names.isComplete && (listing != nullptr || !isShortage(errno));
    while (const dirent* const entry = listing != nullptr ? readdir(listing.get()) : nullptr) {
        heartbeat();
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            use(name, entry->d_type == DT_DIR || entry->d_type == DT_LNK || entry->d_type == DT_UNKNOWN);
        }
    }
}

QString text(std::string_view bytes) {
    return QString::fromUtf8(bytes.data(), static_cast<qsizetype>(bytes.size()));
}

QString lastPiece(const QString& identifier) {
    return identifier.mid(identifier.lastIndexOf(QLatin1Char('.')) + 1);
}

/// The contents of a small file, if it can be read.
std::optional<QByteArray> contentsOf(const std::string& path, InstalledNames& names) {
    const std::optional<std::string> contents = readSmallFile(AT_FDCWD, path.c_str(), sizeLimit);
    names.isComplete = names.isComplete && (contents || !isShortage(errno));
    return contents ? std::optional(QByteArray::fromStdString(*contents)) : std::nullopt;
}

void addBundles(const FileURL& folder, InstalledNames& names) {
    forEachEntry(folder, names, [&](std::string_view name, bool) {
        if (name.size() <= bundleSuffix.size() || !name.ends_with(bundleSuffix)) {
            return;
        }
        names.bundles.push_back(text(name.substr(0, name.size() - bundleSuffix.size())));
        const auto contents = contentsOf(folder.appendingPathComponent(name).path() + "/Contents/Info.plist", names);
        if (const std::optional<QString> identifier = contents ? bundleIdentifier(*contents) : std::nullopt) {
            names.bundles.push_back(lastPiece(*identifier));
        }
    });
}

/// `prefix` is the part of the identifiers that comes from the folders above: "kde/a.desktop" has the id "kde-a".
void addEntries(const FileURL& folder, const std::string& prefix, int depth, InstalledNames& names) {
    forEachEntry(folder, names, [&](std::string_view name, bool mayBeFolder) {
        const FileURL url = folder.appendingPathComponent(name);
        if (!name.ends_with(entrySuffix)) {
            if (mayBeFolder && depth < depthLimit) {
                addEntries(url, prefix + std::string(name) + '-', depth + 1, names);
            }
            return;
        }
        const std::string id = prefix + std::string(name.substr(0, name.size() - entrySuffix.size()));
        names.identifiers.insert(id);
        names.programs.push_back(text(id));
        names.programs.push_back(lastPiece(text(id)));
        // "Music" or "Files" is not only the name of an application.
        if (!piecesOfIdentifier(lastPiece(text(id))).isEmpty()) {
            names.applications.push_back(lastPiece(text(id)));
        }
        const QStringList pieces = piecesOfIdentifier(text(id));
        names.words.insert(names.words.end(), pieces.begin(), pieces.end());
        if (const std::optional<QByteArray> contents = contentsOf(url.path(), names)) {
            for (QString& found : namesInDesktopEntry(*contents)) {
                names.programs.push_back(std::move(found));
            }
        }
    });
}

void addPrograms(const FileURL& folder, InstalledNames& names) {
    forEachEntry(folder, names, [&](std::string_view name, bool) {
        if (access(folder.appendingPathComponent(name).path().c_str(), X_OK) == 0) {
            names.programs.push_back(text(name));
        }
    });
}

/// The executables of each version in a folder.
void addVersions(const FileURL& folder, InstalledNames& names) {
    forEachEntry(folder, names, [&](std::string_view name, bool mayBeFolder) {
        if (mayBeFolder) {
            addPrograms(folder.appendingPathComponent(name).appendingPathComponent("bin"), names);
        }
    });
}

void addAppImages(const FileURL& folder, InstalledNames& names) {
    constexpr QLatin1String suffix(".AppImage");
    forEachEntry(folder, names, [&](std::string_view name, bool) {
        const QString file = text(name);
        if (file.endsWith(suffix, Qt::CaseInsensitive)) {
            // "Krita-5.2.2-x86_64.AppImage": the whole contains the program's name.
            const QString stem = file.chopped(suffix.size());
            names.programs.push_back(stem);
            const QStringList pieces = piecesOfIdentifier(stem);
            names.words.insert(names.words.end(), pieces.begin(), pieces.end());
        }
    });
}

void addSnaps(const FileURL& folder, InstalledNames& names) {
    forEachEntry(folder, names, [&](std::string_view name, bool) {
        if (name.ends_with(".snap")) {
            names.programs.push_back(text(name.substr(0, name.find('_'))));
        }
    });
}

/// The packages that are installed; those of which only settings are left are not.
void addPackages(const FileURL& list, InstalledNames& names) {
    // Longer than the list of a system with all packages there are.
    constexpr std::size_t longest = std::size_t{128} << 20;
    const std::optional<std::string> contents = readSmallFile(AT_FDCWD, list.path().c_str(), longest);
    names.isComplete = names.isComplete && (contents || !isShortage(errno));
    std::string_view rest = contents ? std::string_view(*contents) : std::string_view();
    std::string_view package;
    while (!rest.empty()) {
        heartbeat();
        const std::string_view line = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        constexpr std::string_view name = "Package: ";
        if (line.starts_with(name)) {
            package = line.substr(name.size());
        } else if (line.starts_with("Status: ") && line.ends_with(" installed")) {
            names.words.push_back(text(package));
        }
    }
}

/// Appends to `folders` the absolute paths in a colon-separated list, each with `below` appended.
void addPaths(const char* list, const char* below, std::vector<FileURL>& folders) {
    std::string_view rest = list == nullptr ? "" : list;
    while (!rest.empty()) {
        const std::size_t colon = std::min(rest.find(':'), rest.size());
        if (rest.front() == '/') {
            folders.emplace_back(std::string(rest.substr(0, colon)) + below);
        }
        rest.remove_prefix(std::min(colon + 1, rest.size()));
    }
}

}  // namespace

ApplicationFolders applicationFolders(const UserFolderPaths& paths) {
    const auto inHome = [&](const char* relative) { return paths.home.appendingPathComponent(relative); };
    const auto inSystem = [&](const char* relative) { return paths.systemRoot.appendingPathComponent(relative); };
    ApplicationFolders folders;
    folders.bundles = {inSystem("Applications"), inHome("Applications")};
    folders.menus = {
        paths.dataHome.appendingPathComponent("applications"),
        inHome(".local/share/applications"),
        inHome(".local/share/flatpak/exports/share/applications"),
        inSystem("usr/local/share/applications"),
        inSystem("usr/share/applications"),
        inSystem("var/lib/flatpak/exports/share/applications"),
        inSystem("var/lib/snapd/desktop/applications"),
    };
    addPaths(std::getenv("XDG_DATA_DIRS"), "/applications", folders.menus);
    folders.programs = {inSystem("usr/bin"), inSystem("usr/local/bin"), inHome(".local/bin")};
    // Where package managers of languages and tools install for one user.
    for (const char* const own : {"bin",
                                  ".cargo/bin",
                                  "go/bin",
                                  ".npm-global/bin",
                                  ".npm-packages/bin",
                                  ".local/share/npm/bin",
                                  ".local/share/pnpm",
                                  ".yarn/bin",
                                  ".bun/bin",
                                  ".deno/bin",
                                  ".pyenv/shims",
                                  ".rbenv/shims",
                                  ".asdf/shims",
                                  ".local/share/mise/shims",
                                  ".local/share/gem/bin",
                                  ".dotnet/tools",
                                  ".krew/bin",
                                  ".composer/vendor/bin",
                                  ".config/composer/vendor/bin",
                                  ".local/share/coursier/bin",
                                  ".ghcup/bin",
                                  ".cabal/bin",
                                  ".opam/default/bin",
                                  ".nix-profile/bin",
                                  "miniconda3/bin",
                                  "anaconda3/bin",
                                  ".linuxbrew/bin",
                                  ".local/opt/bin"}) {
        folders.programs.push_back(inHome(own));
    }
    addPaths(std::getenv("PATH"), "", folders.programs);
    folders.versions = {inHome(".local/share/gem/ruby"),   inHome(".gem/ruby"),         inHome(".nvm/versions/node"),
                        inHome(".local/share/pipx/venvs"), inHome(".local/pipx/venvs"), inHome(".sdkman/candidates")};
    for (const char* const own :
         {"Applications", "AppImages", ".local/bin", "bin", "opt", "Downloads", "Desktop", ""}) {
        folders.appImages.push_back(*own == '\0' ? paths.home : inHome(own));
    }
    for (const std::optional<FileURL>& own : {paths.downloads, paths.desktop}) {
        if (own) {
            folders.appImages.push_back(*own);
        }
    }
    folders.snaps = inSystem("var/lib/snapd/snaps");
    folders.packages = inSystem("var/lib/dpkg/status");
    folders.steam = {paths.dataHome.appendingPathComponent("Steam"), inHome(".steam/steam"),
                     inHome(".steam/debian-installation"), inHome(".var/app/com.valvesoftware.Steam/data/Steam"),
                     inHome("snap/steam/common/.local/share/Steam")};
    folders.lutris = {paths.dataHome.appendingPathComponent("lutris/games"),
                      paths.configHome.appendingPathComponent("lutris/games"),
                      inHome(".var/app/net.lutris.Lutris/data/lutris/games"),
                      inHome(".var/app/net.lutris.Lutris/config/lutris/games")};
    for (const FileURL& heroic : {paths.configHome.appendingPathComponent("heroic"),
                                  inHome(".var/app/com.heroicgameslauncher.hgl/config/heroic")}) {
        for (const char* const list : {"legendaryConfig/legendary/installed.json", "gog_store/installed.json",
                                       "nile_config/nile/installed.json", "sideload_apps/library.json"}) {
            folders.heroic.push_back(heroic.appendingPathComponent(list));
        }
    }
    folders.flatpaks = {inSystem("var/lib/flatpak/app"), inHome(".local/share/flatpak/app"),
                        paths.dataHome.appendingPathComponent("flatpak/app")};
    return folders;
}

InstalledNames DesktopApplications::names() const {
    InstalledNames names;
    for (const FileURL& folder : m_folders.bundles) {
        addBundles(folder, names);
    }
    for (const FileURL& folder : m_folders.menus) {
        addEntries(folder, {}, 0, names);
    }
    for (const FileURL& folder : m_folders.programs) {
        addPrograms(folder, names);
    }
    for (const FileURL& folder : m_folders.flatpaks) {
        forEachEntry(folder, names, [&](std::string_view name, bool) { names.identifiers.insert(name); });
    }
    for (const FileURL& folder : m_folders.versions) {
        addVersions(folder, names);
    }
    for (const FileURL& folder : m_folders.appImages) {
        addAppImages(folder, names);
    }
    addSnaps(m_folders.snaps, names);
    addPackages(m_folders.packages, names);
    for (QString& game : InstalledGames::names(m_folders.steam, m_folders.lutris, m_folders.heroic)) {
        names.programs.push_back(std::move(game));
    }
    return names;
}
