#pragma once

#include "Desktop/Trash.h"
#include "Foundation/MountTable.h"
#include "Trash/TrashFolder.h"
#include "Trash/TrashHome.h"

#include <chrono>
#include <mutex>

/// The freedesktop.org Trash 1.0. An item on the home's file system is renamed into the home Trash, one on another file
/// system into the Trash at its top. If neither is possible, or file managers would not show the latter, the item is
/// copied into the home Trash and the original removed. If the program is killed at any moment, the item is where it
/// was, or in the Trash with a complete .trashinfo file.
class FreedesktopTrash final : public Trash {
public:
    explicit FreedesktopTrash(TrashHome home = TrashHome::ofUser()) : m_home(std::move(home)) {}

    [[nodiscard]] std::optional<TrashError> move(const FileURL& url, const FileIdentity& wanted,
                                                 const Progress& progress = {},
                                                 const std::stop_token& stop = {}) override;
    [[nodiscard]] std::optional<TrashError> refusal(const FileURL& url) override;

private:
    /// How an item is moved to a Trash.
    enum class Method { intoHome, intoVolume, byCopy };

    [[nodiscard]] Method methodFor(const TrashItem& item, TrashVolume& volume);
    [[nodiscard]] bool isShownAt(const TrashVolume& volume);
    [[nodiscard]] std::vector<Mount> recentMounts();
    [[nodiscard]] std::optional<TrashError> openHome(TrashFolder& trash);
    void removeStaleStagingOnce(const TrashFolder& trash);

    TrashHome m_home;

    std::mutex m_mutex;  ///< Guards the caches below.
    std::vector<FileIdentity> m_cleaned;
    std::vector<Mount> m_mounts;
    std::chrono::steady_clock::time_point m_mountsRead;
    std::string m_volumeAsked;
    bool m_isVolumeShown = false;
    std::chrono::steady_clock::time_point m_volumeRead;
};
