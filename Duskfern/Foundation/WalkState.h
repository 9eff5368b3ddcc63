#pragma once

#include "Foundation/DirectoryWalk.h"
#include "Foundation/HiddenPlaces.h"

#include <condition_variable>
#include <deque>
#include <mutex>
#include <vector>

/// A folder to list, and where to open it from.
struct WalkStep {
    std::shared_ptr<WalkFolder> folder;    ///< Null when the walk is over.
    const WalkFolder* ancestor = nullptr;  ///< The nearest one that is open; null for a root.
    std::shared_ptr<Descriptor> base;      ///< The descriptor of `ancestor`.
};

/// The state shared by the workers of one walk. Guarded by its mutex unless noted otherwise.
class WalkState {
public:
    /// One root of the walk.
    struct Root {
        WalkRoot place;
        bool wasOpened = false;
        HiddenPlaces hidden;  ///< Set when the root is opened, before another worker can use it.
        std::string path;     ///< Without links; empty until it is opened.
    };

    WalkState(std::vector<WalkRoot> places, DirectoryWalk::Policy enterPolicy, std::stop_token stopToken,
              std::vector<Mount> mountTable);
    ~WalkState();

    void setTag(std::size_t root, void* tag);

    /// The first folder for a worker. Waits until there is one and the worker is among the permitted ones.
    [[nodiscard]] WalkStep take();

    /// Ends the listing of a folder, whose `descriptor` is kept open for a while if there are subfolders to list,
    /// `found`. Returns the next folder to list, preferably the first of these, which keeps the number of pending
    /// folders small and the way to them short.
    /// What is not kept open is closed before the wait for another folder.
    [[nodiscard]] WalkStep finish(WalkStep step, std::shared_ptr<Descriptor> descriptor,
                                  std::vector<std::shared_ptr<WalkFolder>>& found);

    /// Makes the folder, which the calling worker took but cannot open now, pending again, and closes all descriptors
    /// that are kept open. False when no other worker is listing a folder, so that nobody would free the resources that
    /// are missing.
    [[nodiscard]] bool putBack(WalkStep& step);

    /// A root was opened; `path` is its path without links.
    void setRoot(WalkFolder& folder, std::string path, const std::shared_ptr<Descriptor>& descriptor);

    /// Keeps the descriptor of a folder on the way to a deeper one.
    void keepOpen(const std::shared_ptr<WalkFolder>& folder, const std::shared_ptr<Descriptor>& descriptor);

    /// Closes what is kept open except for the roots.
    void closeKept();

    /// Skips everything that is on the mount of `folder`, which does not answer, unless a root is on that mount.
    void skipMountOf(const WalkFolder& folder);

    /// Ends the walk early for lack of memory. Called by a worker that is listing a folder.
    void giveUp();

    /// The number of workers that may list folders at the same time; the others wait.
    void permit(std::size_t count);

    /// Whether folders are pending that more workers could list.
    [[nodiscard]] bool hasPending();

    /// The absolute path of a folder.
    [[nodiscard]] std::string pathOf(const WalkFolder& folder) const;

    const DirectoryWalk::Policy policy;
    const std::stop_token stop;
    const std::vector<Mount> mounts;
    std::vector<Root> roots;  ///< Never resized.
    const std::shared_ptr<LateAnswer> late = std::make_shared<LateAnswer>();

    std::mutex mutex;
    std::condition_variable changed;  ///< Folders became pending, more workers are permitted, or the walk is over.
    std::condition_variable ended;    ///< A worker has ended. The watching thread waits for it.
    std::size_t activeWorkers = 0;    ///< Workers that were started and have not ended.
    bool hasSkipped = false;

    /// Kept here because abandoned threads may outlive the `DirectoryWalk`.
    std::vector<std::unique_ptr<class WalkWorker>> workers;

private:
    [[nodiscard]] WalkStep next(std::unique_lock<std::mutex>& lock);
    [[nodiscard]] bool isOnDeadMount(const WalkFolder& folder) const;
    [[nodiscard]] bool isOver() const { return m_timeouts >= maximumTimeouts || stop.stop_requested(); }
    void keep(const std::shared_ptr<WalkFolder>& folder, const std::shared_ptr<Descriptor>& descriptor);
    void closeAllKept();

    /// After this many timeouts the rest of the walk is skipped, because each timeout leaves a blocked thread behind.
    static constexpr std::size_t maximumTimeouts = 16;

    /// The maximum number of folders that are kept open. Beyond it the oldest one is closed: it is near its root, from
    /// where it is opened again quickly.
    static constexpr std::size_t maximumKept = 96;

    std::vector<std::shared_ptr<WalkFolder>> m_pending;
    std::deque<std::weak_ptr<WalkFolder>> m_kept;  ///< Folders kept open, the oldest first.
    std::vector<std::string> m_deadMounts;
    std::size_t m_timeouts = 0;
    std::size_t m_busy = 0;     ///< Workers that list a folder and may add pending ones.
    std::size_t m_waiting = 0;  ///< Workers that wait for a pending folder.
    std::size_t m_permitted = 1;
};
