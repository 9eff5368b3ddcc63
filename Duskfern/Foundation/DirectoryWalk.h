#pragma once

#include "Foundation/Descriptor.h"
#include "Foundation/FileStatus.h"
#include "Foundation/FileURL.h"
#include "Foundation/LateAnswer.h"
#include "Foundation/MountTable.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

/// A folder met by a walk. Owned by those who list it, by its subfolders, and by what is kept to be listed, so that a
/// walk needs memory only for the folders on the way to the pending ones.
struct WalkFolder {
    WalkFolder() = default;
    ~WalkFolder();
    WalkFolder(const WalkFolder&) = delete;
    WalkFolder& operator=(const WalkFolder&) = delete;

    /// The path relative to its root, or to a folder above it.
    [[nodiscard]] std::string path() const;
    [[nodiscard]] std::string pathFrom(const WalkFolder& above) const;

    std::shared_ptr<WalkFolder> parent;  ///< None for a root of the walk.
    std::string name;                    ///< Empty for a root.
    std::uint32_t root = 0;              ///< Index of the root it lies below.
    std::uint32_t depth = 0;             ///< Folders above it, up to the root.
    std::size_t pathLength = 0;          ///< Bytes of the path relative to the root.

    /// For the visitors: the one that reports the folder sets it in `subfolder()`, the one that lists the folder reads
    /// it in `beginFolder()`.
    void* tag = nullptr;

private:
    friend class WalkState;
    std::shared_ptr<Descriptor> m_descriptor;  ///< Guarded by the walk's mutex. Null unless it is kept open.
};

/// Receives what one worker of a walk finds. Each worker has its own visitor and is the only one to call it. A visitor
/// gets all entries of every folder that its worker lists; which folders those are is not defined. A visitor must not
/// access a disk: only the calls of the worker itself are watched for timeouts.
class WalkVisitor {
public:
    virtual ~WalkVisitor() = default;

    /// The entries reported from here on lie in `folder`, in the order in which the kernel lists them.
    virtual void beginFolder(const WalkFolder& folder) = 0;

    /// All entries of that folder are reported. The folder may be gone afterwards.
    virtual void endFolder() {}

    /// A regular file of that folder; `name` is NUL-terminated.
    virtual void file(std::string_view name, const FileStatus& status) = 0;

    /// A folder that will be entered later, by this worker or another one.
    virtual void subfolder(WalkFolder& folder) = 0;

    /// An entry of that folder that is left out because its name begins with a dot; "." and ".." among them.
    virtual void hiddenEntry(std::string_view /*name*/) {}

    /// Something in that folder, or the folder itself, could not be examined: an entry without a readable status, or
    /// something skipped after a timeout. A folder that may not be listed is not reported.
    virtual void unreadable() = 0;

    /// An entry of that folder that is gone by the time its status is read. Counts as unreadable unless overridden.
    virtual void vanished() { unreadable(); }
};

/// Where a walk begins. It is entered whatever its name; if it is a link, the link is followed.
struct WalkRoot {
    FileURL url;
    std::vector<std::string> excluded{};  ///< Folders that are not entered: absolute paths without links.
};

/// Walks folder trees on several threads. Hidden entries are left out, links below the roots are not followed, special
/// files are ignored, and a folder that may not be listed counts as empty. The depth and the length of paths and names
/// have no limit. A call that does not return within `diskTimeout` is skipped, with everything else on the same mount
/// unless a root lies on that mount; its thread is abandoned. Access times are left unchanged where the user may ask
/// for that.
class DirectoryWalk {
public:
    /// Decides whether a folder of this name is entered. Called by all workers concurrently.
    using Policy = std::function<bool(std::string_view name)>;

    /// `mounts` is the mount table in which kernel file systems are looked up, which are hidden; with an empty one none
    /// are hidden. `stop` ends the walk early.
    DirectoryWalk(std::vector<WalkRoot> roots, Policy policy, std::stop_token stop = {},
                  std::vector<Mount> mounts = currentMounts());
    ~DirectoryWalk();
    DirectoryWalk(const DirectoryWalk&) = delete;
    DirectoryWalk& operator=(const DirectoryWalk&) = delete;

    /// Sets `WalkFolder::tag` of a root. To be called before the walk.
    void setTag(std::size_t root, void* tag);

    /// Walks with at most one worker for each visitor, and returns when everything is visited or skipped. There are as
    /// many workers as cores, and more while they wait for the disk. Meanwhile `tick` is called on this thread every
    /// few milliseconds. No visitor is called after the return. May be called once.
    void run(const std::vector<WalkVisitor*>& visitors, const std::function<void()>& tick = {});

    /// Whether a root could be opened as a folder. If not, nothing was walked.
    [[nodiscard]] bool wasOpened(std::size_t index) const;

    /// Null unless something was skipped after a timeout.
    [[nodiscard]] std::shared_ptr<LateAnswer> lateAnswer() const;

    /// The number of visitors for a walk: more than there are cores, because on a cold cache more workers hide the
    /// latency of the disk.
    [[nodiscard]] static unsigned maximumWorkers();

private:
    std::shared_ptr<class WalkState> m_state;  ///< Shared with threads that may outlive this.
};
