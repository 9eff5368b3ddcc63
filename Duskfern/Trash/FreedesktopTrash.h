#pragma once

#include "Desktop/Trash.h"
#include "Foundation/MountTable.h"
#include "Trash/TrashFolder.h"
#include "Trash/TrashHome.h"

#include <chrono>
#include <mutex>

/// The freedesktop.org Trash 1.0. What lies on the home's file system is renamed into the home
/// Trash, what lies on another one into the Trash at its top; where no rename leads, or no file manager would show the
/// result, it is copied into the home Trash and the original removed. Killed at any moment, every item is where it was,
/// or in the Trash with its whole note.
class FreedesktopTrash final : public Trash {
public:
    explicit FreedesktopTrash(TrashHome home = TrashHome::ofUser()) : m_home(std::move(home)) {}

    [[nodiscard]] std::optional<TrashError> move(const FileURL& url, const FileIdentity& wanted,
                                                 const Progress& progress = {},
                                                 const std::stop_token& stop = {}) override;
    [[nodiscard]] std::optional<TrashError> refusal(const FileURL& url) override;

private:
    /// How an item gets into a Trash.
    enum class Way { intoHome, intoVolume, byCopy };

    [[nodiscard]] Way wayFor(const TrashItem& item, TrashVolume& volume);
    [[nodiscard]] bool isShownAt(const TrashVolume& volume);
    [[nodiscard]] std::vector<Mount> recentMounts();
    [[nodiscard]] std::optional<TrashError> openHome(TrashFolder& trash);
    void clearLeftoversOnce(const TrashFolder& trash);

    TrashHome m_home;

    std::mutex m_mutex;  ///< Guards what follows, which only saves time.
    std::vector<FileIdentity> m_cleared;
    std::vector<Mount> m_mounts;
    std::chrono::steady_clock::time_point m_mountsRead;
    std::string m_volumeAsked;
    bool m_isVolumeShown = false;
    std::chrono::steady_clock::time_point m_volumeRead;
};
