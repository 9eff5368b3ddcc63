#include "Foundation/WalkWorker.h"

#include "Foundation/HiddenList.h"
#include "Foundation/OpenPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <new>
#include <thread>

namespace {

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

/// Large enough that one read gets all entries of nearly every folder.
constexpr std::size_t bufferSize = std::size_t{64} * 1024;

/// In deep trees a folder whose depth is a multiple of this is kept open on the way to one that is deeper by more than
/// twice as much, so that the paths to its neighbours are short.
constexpr std::uint32_t anchorDistance = 32;

/// How often a folder is tried again that could not be opened for a shortage, and after how long. Not for each folder
/// anew, because the shortage may last.
constexpr int maximumShortages = 20;
constexpr std::chrono::milliseconds shortagePause{5};

/// Keeps errno.
std::shared_ptr<Descriptor> openShared(Descriptor descriptor) {
    const int error = errno;
    auto shared = std::make_shared<Descriptor>(std::move(descriptor));
    errno = error;
    return shared;
}

}  // namespace

template <class Call>
auto WalkWorker::callDisk(DiskCall kind, Call call) {
    m_diskCall = kind;
    WatchedCalls& calls = *m_calls;
    const auto endCall = [&calls] {
        const int error = errno;
        if (!calls.leave()) {
            throw ThreadAbandoned();
        }
        errno = error;
    };
    calls.enter();
    try {
        auto answer = call();
        endCall();
        return answer;
    } catch (const std::bad_alloc&) {
        endCall();
        throw;
    }
}

void WalkWorker::run(WatchedCalls& calls) {
    m_calls = &calls;
    if (m_step.folder != nullptr) {
        resumeAfterTimeout();
    } else {
        m_step = m_state.take();
    }
    while (m_step.folder != nullptr) {
        try {
            if (!m_hasBegun && !open()) {
                return;
            }
            listEntries();
            if (m_hasTimedOut) {
                skipMount();
                continue;
            }
            examineSpecialFiles();
        } catch (const std::bad_alloc&) {
            m_visitor.unreadable();
        }
        finishFolder();
    }
}

/// Continues after a timeout: the abandoned thread still waits for this worker's last call, perhaps forever.
void WalkWorker::resumeAfterTimeout() {
    beginFolder();
    m_visitor.unreadable();
    // One entry that does not answer may be an exception; at the second one the mount is skipped.
    if (m_diskCall == DiskCall::stat && ++m_timeouts == 1) {
        return;
    }
    if (m_diskCall == DiskCall::list && m_at < m_size) {
        // The entries already read are still visited. The abandoned thread may write to the buffer behind them.
        m_hasTimedOut = true;
        return;
    }
    skipMount();
}

void WalkWorker::skipMount() {
    m_buffer.reset();
    m_state.skipMountOf(*m_step.folder);
    finishFolder();
}

void WalkWorker::beginFolder() {
    if (!std::exchange(m_hasBegun, true)) {
        m_visitor.beginFolder(*m_step.folder);
    }
}

void WalkWorker::finishFolder() {
    if (m_hasBegun) {
        m_visitor.endFolder();
    }
    m_step = m_state.finish(std::move(m_step), std::exchange(m_descriptor, nullptr), m_subfolders);
    m_hasBegun = false;
    m_size = 0;
    m_at = 0;
    m_isFirstRead = true;
    m_isAtEnd = false;
    m_hasTimedOut = false;
    m_timeouts = 0;
    m_hasStatus = false;
    m_isStatDenied = false;
    m_specialCount = 0;
}

/// Opens the folder and reports it to the visitor. False when it was made pending again and this worker is to end.
bool WalkWorker::open() {
    openOnce();
    if (!m_descriptor->isOpen() && errno == EPERM && m_ownsFolders) {
        m_ownsFolders = false;
        openOnce();
    }
    if (isShort() && !openDespiteShortage()) {
        return false;
    }
    beginFolder();
    if (m_descriptor->isOpen()) {
        if (!m_ownsFolders) {
            // This one may belong to the user again.
            (void)fcntl(m_descriptor->number(), F_SETFL, O_NONBLOCK | O_NOATIME);
        }
        findHiddenNames();
    }
    return true;
}

/// Keeps errno.
void WalkWorker::openOnce() {
    const int flags = openFlags | (m_ownsFolders ? O_NOATIME : 0);
    m_descriptor = m_step.folder->parent == nullptr ? openRoot(flags) : openBelowRoot(flags);
}

/// Whether the folder could not be opened for want of descriptors or memory. Right after `openOnce()`.
bool WalkWorker::isShort() const {
    return !m_descriptor->isOpen() && isShortage(errno);
}

/// Opens the folder with what others give back; without success, counts it as unreadable. False when it was made
/// pending again and this worker is to end.
bool WalkWorker::openDespiteShortage() {
    m_state.closeKept();
    openOnce();
    if (!isShort()) {
        return true;
    }
    if (m_state.putBack(m_step)) {
        return false;
    }
    // Other threads of the program need a descriptor for moments.
    openOnce();
    while (isShort() && m_shortages < maximumShortages) {
        ++m_shortages;
        std::this_thread::sleep_for(shortagePause);
        openOnce();
    }
    if (isShort()) {
        beginFolder();
        m_visitor.unreadable();
    } else {
        m_shortages = 0;
    }
    return true;
}

std::shared_ptr<Descriptor> WalkWorker::openRoot(int flags) {
    WalkFolder& folder = *m_step.folder;
    const FileURL& url = m_state.roots[folder.root].place.url;
    auto opened = callDisk(DiskCall::open, [&url, flags] { return openShared(openPath(url, flags)); });
    if (opened->isOpen()) {
        m_state.setRoot(folder, pathOfOpen(opened->number()).value_or(url.path()), opened);
    }
    return opened;
}

std::shared_ptr<Descriptor> WalkWorker::openBelowRoot(int flags) {
    const WalkFolder& folder = *m_step.folder;
    if (folder.depth - m_step.ancestor->depth > 2 * anchorDistance) {
        std::shared_ptr<WalkFolder> anchor = folder.parent;
        while (anchor->depth % anchorDistance != 0) {
            anchor = anchor->parent;
        }
        auto opened = openFrom(m_step.base, anchor->pathFrom(*m_step.ancestor), O_PATH | O_DIRECTORY | O_NOFOLLOW);
        if (!opened->isOpen()) {
            return opened;
        }
        m_state.keepOpen(anchor, opened);
        m_step.ancestor = anchor.get();
        m_step.base = std::move(opened);
    }
    return openFrom(m_step.base, folder.pathFrom(*m_step.ancestor), flags | O_NOFOLLOW);
}

std::shared_ptr<Descriptor> WalkWorker::openFrom(const std::shared_ptr<Descriptor>& base, const std::string& path,
                                                 int flags) {
    auto opened =
        callDisk(DiskCall::open, [base, path, flags] { return openShared(openPathAt(base->number(), path, flags)); });
    // A folder that may not be read counts as empty. If not even its status can be read, because its parent may not be
    // searched, it is reported as unreadable.
    if (!opened->isOpen() && errno == EACCES &&
        !callDisk(DiskCall::open, [base, path] { return fileStatus(base->number(), path.c_str()); })) {
        beginFolder();
        m_visitor.unreadable();
        errno = EACCES;
    }
    return opened;
}

void WalkWorker::findHiddenNames() {
    const WalkFolder& folder = *m_step.folder;
    m_hiddenNames = nullptr;
    const HiddenPlaces& hidden = m_state.roots[folder.root].hidden;
    if (hidden.mayHaveNamesIn(folder.pathLength)) {
        m_hiddenNames = hidden.namesIn(folder.path());
    }
}

void WalkWorker::listEntries() {
    if (!m_descriptor->isOpen()) {
        return;
    }
    if (m_buffer == nullptr) {
        m_buffer = std::shared_ptr<char[]>(new char[bufferSize]);
    }
    for (;;) {
        while (m_at < m_size) {
            // The kernel aligns entries to eight bytes.
            const auto& entry = *reinterpret_cast<const dirent64*>(m_buffer.get() + m_at);  // NOLINT
            // Advanced before the visit, so that a thread that resumes after a timeout skips this entry.
            m_at += entry.d_reclen;
            visit(entry);
        }
        if (m_isAtEnd || m_hasTimedOut || m_state.stop.stop_requested()) {
            return;
        }
        m_at = 0;
        m_size = 0;
        readMore();
        if (std::exchange(m_isFirstRead, false)) {
            readHiddenList();
        }
    }
}

/// Reads more entries into the buffer, behind those in it.
void WalkWorker::readMore() {
    const ssize_t size = callDisk(DiskCall::list, [folder = m_descriptor, buffer = m_buffer, from = m_size] {
        return getdents64(folder->number(), buffer.get() + from, bufferSize - from);
    });
    if (size > 0) {
        m_size += static_cast<std::size_t>(size);
    } else {
        m_isAtEnd = true;
    }
}

template <class Visit>
void WalkWorker::forEachEntry(Visit visit) const {
    for (std::size_t at = 0; at < m_size;) {
        const auto& entry = *reinterpret_cast<const dirent64*>(m_buffer.get() + at);  // NOLINT
        visit(entry);
        at += entry.d_reclen;
    }
}

/// Reads the folder's ".hidden". Nearly every folder fits into the buffer, in one read or, where the file system
/// returns few entries at a time, in several; then a search of the buffer tells at no cost whether the file exists.
/// Otherwise it is opened to find out.
void WalkWorker::readHiddenList() {
    while (!m_isAtEnd && m_size <= bufferSize / 2) {
        readMore();
    }
    bool mayBeThere = !m_isAtEnd;
    forEachEntry([&](const dirent64& entry) {
        mayBeThere = mayBeThere || (entry.d_name[0] == '.' && std::string_view(entry.d_name) == hiddenListName);
    });
    if (mayBeThere) {
        m_hiddenList = callDisk(DiskCall::stat, [folder = m_descriptor] { return hiddenNames(folder->number()); });
        m_hiddenNames = m_hiddenNames == nullptr ? &m_hiddenList : &m_hiddenList.merge(*m_hiddenNames);
    }
}

std::optional<FileStatus> WalkWorker::status(const char* name) {
    // Number and name are only passed to the kernel: when an abandoned thread makes this call late, the descriptor may
    // be closed and the buffer freed. Its answer is dropped then.
    const auto found =
        callDisk(DiskCall::stat, [folder = m_descriptor->number(), name] { return fileStatus(folder, name); });
    m_hasStatus = m_hasStatus || found;
    m_isStatDenied = m_isStatDenied || (!found && errno == EACCES);
    if (!found) {
        errno == ENOENT ? m_visitor.vanished() : m_visitor.unreadable();
    }
    return found;
}

void WalkWorker::visit(const dirent64& entry) {
    const std::string_view name = entry.d_name;
    if (name.front() == '.') {
        m_visitor.hiddenEntry(name);
        return;
    }
    if (m_hiddenNames != nullptr && m_hiddenNames->contains(name)) {
        return;
    }
    unsigned char type = entry.d_type;
    std::optional<FileStatus> found;
    if (type == DT_REG || type == DT_UNKNOWN) {
        found = status(entry.d_name);
        if (!found) {
            return;
        }
        type = type == DT_UNKNOWN ? static_cast<unsigned char>(IFTODT(found->mode)) : type;
    }
    if (type == DT_REG) {
        if (found->isRegularFile()) {
            m_visitor.file(name, *found);
        }
    } else if (type != DT_DIR) {
        if (++m_specialCount == 1) {
            m_specialName = name;
        }
    } else if (m_state.policy(name)) {
        const std::shared_ptr<WalkFolder>& folder = m_step.folder;
        auto subfolder = std::make_shared<WalkFolder>();
        subfolder->parent = folder;
        subfolder->name = name;
        subfolder->root = folder->root;
        subfolder->depth = folder->depth + 1;
        subfolder->pathLength = folder->pathLength + name.size() + (folder->pathLength > 0 ? 1 : 0);
        m_visitor.subfolder(*subfolder);
        m_subfolders.push_back(std::move(subfolder));
    }
}

/// Links and special files are ignored without reading their status. But if the folder may not be searched, they count
/// as unreadable like its other entries.
void WalkWorker::examineSpecialFiles() {
    if (m_specialCount == 0 || m_hasStatus) {
        return;
    }
    std::int64_t uncounted = m_specialCount;
    if (!m_isStatDenied) {
        if (status(m_specialName.c_str())) {
            return;
        }
        --uncounted;
    }
    for (; m_isStatDenied && uncounted > 0; --uncounted) {
        m_visitor.unreadable();
    }
}
