#pragma once

#include "Foundation/DiskPatience.h"
#include "Foundation/FileStatus.h"
#include "Foundation/FileURL.h"
#include "Foundation/MountTable.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

/// A folder that a walk has met. It stays valid for as long as the walk object lives.
struct WalkFolder {
    const WalkFolder* parent = nullptr;  ///< None for a root of the walk.
    const char* name = "";               ///< The folder's own name, NUL-terminated; empty for a root.
    std::uint32_t nameLength = 0;
    std::uint32_t pathLength = 0;  ///< Bytes of the path relative to the root.
    std::uint32_t depth = 0;       ///< Folders above it, up to the root.
    std::uint32_t root = 0;        ///< Index of the root it lies below.

    /// Left to the visitor that lists this folder. No other thread touches it before the walk has ended.
    void* listing = nullptr;
};

/// What one worker of a walk reports to. Each worker has its own visitor and is the only one to call it; the folders
/// that a visitor gets are those its worker happens to take, each from its beginning to its end. A visitor touches no
/// disk: a thread that waits there is left behind, and the worker goes on with another one.
class WalkVisitor {
public:
    virtual ~WalkVisitor() = default;

    /// The entries reported from here on lie in `folder`, in the order in which the kernel lists them.
    virtual void beginFolder(WalkFolder& folder) = 0;

    /// A regular file of that folder; `name` is NUL-terminated.
    virtual void file(std::string_view name, const FileStatus& status) = 0;

    /// A folder that will be entered, now or later, by this worker or another one.
    virtual void subfolder(const WalkFolder& folder) = 0;

    /// Something that could not be examined: an entry without a readable status, or what was passed over because it
    /// did not answer. A folder that may not be listed is not reported.
    virtual void unreadable() = 0;
};

/// Where a walk begins. The folder is entered whatever its name, and followed if it is a link.
struct WalkRoot {
    FileURL url;
    std::vector<std::string> except{};  ///< Folders that are not entered: absolute paths without links.
};

/// Walks folder trees on several threads at once. Hidden entries are left out, links are never followed (below the
/// roots), other special files are passed over, and a folder that may not be listed counts as empty. Depth and the
/// length of paths and names have no limit. What does not answer for `diskPatience` is passed over, with everything
/// else on the same mount unless a root lies on it; the thread that waits for it is left behind. Access times are left
/// alone where the user may ask for that.
class DirectoryWalk {
public:
    /// Decides whether a folder of this name is entered. Called on all workers at once.
    using Policy = std::function<bool(std::string_view name)>;

    /// `mounts` are those below which kernel file systems hide; none are looked for where it is empty. `stop` ends the
    /// walk early.
    DirectoryWalk(std::vector<WalkRoot> roots, Policy policy, std::stop_token stop = {},
                  std::vector<Mount> mounts = currentMounts());
    ~DirectoryWalk();
    DirectoryWalk(const DirectoryWalk&) = delete;
    DirectoryWalk& operator=(const DirectoryWalk&) = delete;

    /// Walks with one worker for each visitor, and returns when all is visited or passed over. Meanwhile `tick` is
    /// called on this thread every few milliseconds. The visitors are not called any more after that. Once a walk.
    void run(const std::vector<WalkVisitor*>& visitors, const std::function<void()>& tick = {});

    /// The folder of a root, for the time after the walk.
    [[nodiscard]] WalkFolder& root(std::size_t index);

    /// Whether a root could be opened as a folder. If not there was nothing to walk.
    [[nodiscard]] bool wasOpened(std::size_t index) const;

    /// Null unless something was passed over because it did not answer.
    [[nodiscard]] std::shared_ptr<LateAnswer> lateAnswer() const;

    /// How many threads pay off here: more than there are cores, because on a cold cache they hide the disk's latency.
    [[nodiscard]] static unsigned recommendedThreads();

private:
    std::shared_ptr<class WalkState> m_state;  ///< Shared with threads that may outlive this.
};
