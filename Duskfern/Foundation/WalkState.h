#pragma once

#include "Foundation/Descriptor.h"
#include "Foundation/DirectoryWalk.h"
#include "Foundation/HiddenPlaces.h"

#include <condition_variable>
#include <mutex>
#include <vector>

/// What the workers of one walk share. Everything in it is guarded by its mutex unless it says otherwise.
class WalkState {
public:
    /// One root, with what belongs to it alone.
    struct Root {
        WalkRoot place;
        WalkFolder folder;
        bool wasOpened = false;
        std::size_t openFolders = 1;             ///< Folders found below it and not listed yet, itself included.
        std::shared_ptr<Descriptor> descriptor;  ///< Set by the worker that opens it; gone when all below is listed.
        HiddenPlaces hidden;                     ///< Set with the descriptor, before any other worker gets to know.
        std::string path;                        ///< Without links; empty until it is opened.
    };

    WalkState(std::vector<WalkRoot> places, DirectoryWalk::Policy enterPolicy, std::stop_token stopToken,
              std::vector<Mount> mountTable);
    ~WalkState();

    /// The folder to list next, the one found last, so that few are pending at a time. Waits for one; null when the
    /// walk is over.
    [[nodiscard]] WalkFolder* take();

    /// A worker is done with `folder` and has found these in it.
    void give(const WalkFolder& folder, std::vector<WalkFolder*>& found);

    /// The same for a worker that could not list it now: somebody else is to. False when nobody else is at work.
    [[nodiscard]] bool giveBack(WalkFolder& folder);

    /// Ends the walk of everything that lies on the mount of `folder`, which does not answer, unless a root does.
    void passOverMountOf(const WalkFolder& folder);

    /// Ends the walk early, because there is no memory to go on. The caller was listing a folder.
    void giveUp();

    /// The absolute path of a folder.
    [[nodiscard]] std::string pathOf(const WalkFolder& folder) const;

    const DirectoryWalk::Policy policy;
    const std::stop_token stop;
    const std::vector<Mount> mounts;
    std::vector<Root> roots;  ///< Never resized.
    const std::shared_ptr<LateAnswer> late = std::make_shared<LateAnswer>();

    std::mutex mutex;
    std::condition_variable changed;  ///< Folders were given, or the walk is over.
    std::condition_variable ended;    ///< The walk is over: for the thread that watches.
    std::size_t workers = 0;          ///< Those that have not come to their end.
    bool hasPassedOver = false;

    /// The workers, which live as long as their threads may.
    std::vector<std::unique_ptr<class WalkWorker>> crew;

private:
    static void closeIfListed(Root& root);
    [[nodiscard]] bool isOver() const { return m_silences >= maximumSilences || stop.stop_requested(); }

    /// After so many silences all the rest is passed over: each of them holds a thread.
    static constexpr std::size_t maximumSilences = 16;

    std::vector<WalkFolder*> m_pending;
    std::vector<std::string> m_deadMounts;
    std::size_t m_silences = 0;
    std::size_t m_busy = 0;     ///< Workers that list a folder and may yet give more.
    std::size_t m_waiting = 0;  ///< Workers that wait for a folder.
};
