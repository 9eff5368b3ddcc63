#pragma once

#include "Desktop/InstalledApplications.h"
#include "Desktop/UserFolders.h"

#include <utility>
#include <vector>

/// The folders where applications are installed.
struct ApplicationFolders {
    std::vector<FileURL> bundles;   ///< Folders of `*.app` bundles.
    std::vector<FileURL> menus;     ///< Folders of desktop entries.
    std::vector<FileURL> programs;  ///< Folders of executables.
    std::vector<FileURL> flatpaks;  ///< Folders that hold one folder per installed Flatpak.

    /// Folders whose children are folders that have the executables in "bin", for instance one per version.
    std::vector<FileURL> versions;
    std::vector<FileURL> appImages;  ///< Folders in which people keep AppImages.
    FileURL snaps;                   ///< Folder of the images of installed snaps, "name_revision.snap".
    FileURL packages;                ///< The list of dpkg.
    std::vector<FileURL> steam;      ///< Folders of Steam, with "steamapps".
    std::vector<FileURL> lutris;     ///< Folders with one file per game of Lutris, "name-number.yml".
    std::vector<FileURL> heroic;     ///< Lists of games, in JSON.
};

/// The application folders of the user and the system, including those in PATH and XDG_DATA_DIRS.
[[nodiscard]] ApplicationFolders applicationFolders(const UserFolderPaths& paths);

/// The applications found in the given folders: bundles by name and property list, desktop entries (including hidden
/// ones and those whose program is missing), executables and AppImages by file name, snaps, packages and games.
class DesktopApplications final : public InstalledApplications {
public:
    explicit DesktopApplications(ApplicationFolders folders) : m_folders(std::move(folders)) {}

    [[nodiscard]] InstalledNames names() const override;

private:
    const ApplicationFolders m_folders;
};
