#pragma once

#include "Desktop/InstalledApplications.h"
#include "Desktop/UserFolders.h"

#include <functional>
#include <vector>

/// Where applications are installed.
struct ApplicationFolders {
    std::vector<FileURL> bundles;   ///< Folders of `*.app` bundles.
    std::vector<FileURL> menus;     ///< Folders of desktop entries.
    std::vector<FileURL> programs;  ///< Folders of programs.
    std::vector<FileURL> flatpaks;  ///< Folders with one folder for each installed Flatpak.
};

/// The application folders of a user and the system, those that the environment names (PATH, XDG_DATA_DIRS) among them.
[[nodiscard]] ApplicationFolders applicationFolders(const UserFolderPaths& paths);

/// The applications found in given folders: bundles by their names and property lists, desktop entries (also hidden
/// ones and those whose program is gone), programs by their file names.
class DesktopApplications final : public InstalledApplications {
public:
    /// `folders` is called each time that names are asked for, on that thread.
    explicit DesktopApplications(std::function<ApplicationFolders()> folders) : m_folders(std::move(folders)) {}

    [[nodiscard]] InstalledNames names() const override;

private:
    const std::function<ApplicationFolders()> m_folders;
};
