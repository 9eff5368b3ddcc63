#pragma once

#include "Foundation/FileURL.h"
#include "Foundation/MountPoints.h"
#include "Foundation/NameArena.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <string_view>
#include <thread>
#include <vector>

/// A folder that a walk has met. It stays valid for as long as the walk object lives.
struct WalkFolder {
    const WalkFolder* parent = nullptr;  ///< None for the root of the walk.
    const char* name = "";               ///< The folder's own name; empty for the root.
    std::uint32_t nameLength = 0;
    std::uint32_t pathLength = 0;  ///< Bytes of the path relative to the root.

    /// Left to the visitor that lists this folder. No other thread touches it before the walk has ended.
    void* listing = nullptr;
};

/// What one worker of a walk reports to. Each worker has its own visitor and is the only one to call it; the folders
/// that a visitor gets are those its worker happens to take, each from its beginning to its end.
class WalkVisitor {
public:
    virtual ~WalkVisitor() = default;

    /// The entries reported from here on lie in `folder`, in the order in which the kernel lists them.
    virtual void beginFolder(WalkFolder& folder) = 0;

    /// A regular file. `directory` is an open descriptor of its folder, `name` is NUL-terminated.
    virtual void file(int directory, std::string_view name) = 0;

    /// A folder that will be entered, now or later, by this worker or another one.
    virtual void subfolder(const WalkFolder& folder) = 0;

    /// An entry whose kind could not be found out.
    virtual void unreadable() = 0;
};

/// Walks a folder tree on one thread or several. Hidden entries are left out, links are never followed (below the
/// root), other special files are passed over, and a folder that cannot be opened counts as empty. Depth and the
/// length of paths have no limit; descriptors open at a time are one a worker and one for the root.
class DirectoryWalk {
public:
    /// Decides whether a folder of this name is entered. Called on all workers at once.
    using Policy = std::function<bool(std::string_view name)>;

    /// `root` is entered whatever its name, and followed if it is a link. `stop` ends the walk early. Who walks many
    /// folders spares each the reading of the mount table.
    DirectoryWalk(const FileURL& root, Policy policy, std::stop_token stop = {},
                  const std::vector<MountPoint>& mounts = mountPoints());
    ~DirectoryWalk();
    DirectoryWalk(const DirectoryWalk&) = delete;
    DirectoryWalk& operator=(const DirectoryWalk&) = delete;

    /// Whether the root could be opened as a folder. If not there is nothing to walk.
    [[nodiscard]] bool isOpen() const { return m_rootDescriptor >= 0; }

    [[nodiscard]] WalkFolder& root() { return m_root; }

    /// Walks on the calling thread.
    void run(WalkVisitor& visitor);

    /// Walks on one new thread for each visitor. `finished` is called once, on one of them, when all is visited.
    void start(const std::vector<WalkVisitor*>& visitors, std::function<void()> finished);

    /// Waits for the threads of `start()`.
    void join();

    /// How many threads pay off here: more than there are cores, because on a cold cache they hide the disk's latency.
    [[nodiscard]] static unsigned recommendedThreads();

private:
    class Worker;

    [[nodiscard]] WalkFolder* take();
    void give(std::vector<WalkFolder*>& folders);

    Policy m_policy;
    std::stop_token m_stop;
    WalkFolder m_root;
    int m_rootDescriptor = -1;
    std::unique_ptr<class HiddenPlaces> m_hiddenPlaces;
    std::function<void()> m_finished;
    std::vector<std::unique_ptr<Worker>> m_workers;
    std::vector<std::thread> m_threads;

    std::mutex m_mutex;  ///< Guards what follows.
    std::condition_variable m_changed;
    std::vector<WalkFolder*> m_pending;
    std::size_t m_busy = 0;     ///< Workers that list a folder and may yet give more.
    std::size_t m_waiting = 0;  ///< Workers that wait for a folder.
};
