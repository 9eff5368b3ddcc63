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
};

/// The application folders of the user and the system, including those in PATH and XDG_DATA_DIRS.
[[nodiscard]] ApplicationFolders applicationFolders(const UserFolderPaths& paths);

/// The applications found in the given folders: bundles by name and property list, desktop entries (including hidden
/// ones and those whose program is missing), and executables by file name.
class DesktopApplications final : public InstalledApplications {
public:
    explicit DesktopApplications(ApplicationFolders folders) : m_folders(std::move(folders)) {}

    [[nodiscard]] InstalledNames names() const override;

private:
    const ApplicationFolders m_folders;
};
