#pragma once

#include "Foundation/Descriptor.h"
#include "Foundation/DirectoryWalk.h"
#include "Foundation/HiddenPlaces.h"

#include <condition_variable>
#include <mutex>
#include <vector>

/// The state shared by the workers of one walk. Guarded by its mutex unless noted otherwise.
class WalkState {
public:
    /// One root of the walk.
    struct Root {
        WalkRoot place;
        WalkFolder folder;
        bool wasOpened = false;
        std::size_t unlistedFolders = 1;         ///< Folders found below it, itself included, that are not listed yet.
        std::shared_ptr<Descriptor> descriptor;  ///< Set by the worker that opens it; null when all below is listed.
        HiddenPlaces hidden;                     ///< Set with the descriptor, before another worker can use it.
        std::string path;                        ///< Without links; empty until it is opened.
    };

    WalkState(std::vector<WalkRoot> places, DirectoryWalk::Policy enterPolicy, std::stop_token stopToken,
              std::vector<Mount> mountTable);
    ~WalkState();

    /// The folder to list next: the one found last, which keeps the number of pending folders small. Waits for one;
    /// null when the walk is over.
    [[nodiscard]] WalkFolder* takeFolder();

    /// Ends the listing of `folder`; `found` are its subfolders to list, which become pending.
    void finishFolder(const WalkFolder& folder, std::vector<WalkFolder*>& found);

    /// Makes `folder`, which the calling worker took but cannot open now, pending again. False when no other worker is
    /// listing a folder, so that nobody would free the resources that are missing.
    [[nodiscard]] bool putBack(WalkFolder& folder);

    /// Skips everything that is on the mount of `folder`, which does not answer, unless a root is on that mount.
    void skipMountOf(const WalkFolder& folder);

    /// Ends the walk early for lack of memory. Called by a worker that is listing a folder.
    void giveUp();

    /// The absolute path of a folder.
    [[nodiscard]] std::string pathOf(const WalkFolder& folder) const;

    const DirectoryWalk::Policy policy;
    const std::stop_token stop;
    const std::vector<Mount> mounts;
    std::vector<Root> roots;  ///< Never resized.
    const std::shared_ptr<LateAnswer> late = std::make_shared<LateAnswer>();

    std::mutex mutex;
    std::condition_variable changed;  ///< Folders became pending, or the walk is over.
    std::condition_variable ended;    ///< A worker has ended. The watching thread waits for it.
    std::size_t activeWorkers = 0;    ///< Workers that have not ended.
    bool hasSkipped = false;

    /// Kept here because abandoned threads may outlive the `DirectoryWalk`.
    std::vector<std::unique_ptr<class WalkWorker>> workers;

private:
    static void closeIfListed(Root& root);
    [[nodiscard]] bool isOver() const { return m_timeouts >= maximumTimeouts || stop.stop_requested(); }

    /// After this many timeouts the rest of the walk is skipped, because each timeout leaves a blocked thread behind.
    static constexpr std::size_t maximumTimeouts = 16;

    std::vector<WalkFolder*> m_pending;
    std::vector<std::string> m_deadMounts;
    std::size_t m_timeouts = 0;
    std::size_t m_busy = 0;     ///< Workers that list a folder and may add pending ones.
    std::size_t m_waiting = 0;  ///< Workers that wait for a pending folder.
};
