#include "Foundation/WalkWorker.h"

#include "Foundation/HiddenList.h"
#include "Foundation/OpenPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <new>

namespace {

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

/// Large enough that one read gets all entries of nearly every folder.
constexpr std::size_t bufferSize = std::size_t{64} * 1024;

/// In deep trees each folder whose depth is a multiple of this is kept open, so that paths to open stay short.
constexpr std::uint32_t anchorDistance = 32;

/// The maximum number of folders that one worker keeps open.
constexpr std::size_t maximumOpenFolders = 16;

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
    if (m_folder != nullptr) {
        resumeAfterTimeout();
    }
    while (m_folder != nullptr || (m_folder = m_state.takeFolder()) != nullptr) {
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
    m_state.skipMountOf(*m_folder);
    finishFolder();
}

void WalkWorker::beginFolder() {
    if (!std::exchange(m_hasBegun, true)) {
        m_visitor.beginFolder(*m_folder);
    }
}

void WalkWorker::finishFolder() {
    m_state.finishFolder(*m_folder, m_subfolders);
    m_folder = nullptr;
    m_hasBegun = false;
    m_descriptor.reset();
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
    const auto openOnce = [this] { return m_folder->parent == nullptr ? openRoot() : openBelowRoot(); };
    m_descriptor = openOnce();
    if (!m_descriptor->isOpen() && isShortage(errno)) {
        m_openFolders.clear();
        m_descriptor = openOnce();
        if (!m_descriptor->isOpen() && isShortage(errno)) {
            if (m_state.putBack(*m_folder)) {
                m_folder = nullptr;
                return false;
            }
            m_visitor.unreadable();
        }
    }
    beginFolder();
    if (m_descriptor->isOpen()) {
        // O_NOATIME is allowed for the owner only; the call fails for others, who read without it.
        (void)fcntl(m_descriptor->number(), F_SETFL, O_NONBLOCK | O_NOATIME);
        keepOpen(*m_folder, m_descriptor);
        findHiddenNames();
    }
    return true;
}

std::shared_ptr<Descriptor> WalkWorker::openRoot() {
    WalkState::Root& root = m_state.roots[m_folder->root];
    auto folder = callDisk(DiskCall::open, [&url = root.place.url] { return openShared(openPath(url, openFlags)); });
    if (folder->isOpen()) {
        const std::string path = pathOfOpen(folder->number()).value_or(root.place.url.path());
        const std::lock_guard lock(m_state.mutex);
        root.path = path;
        root.hidden = HiddenPlaces(path, m_state.mounts, root.place.excluded);
        root.descriptor = folder;
        root.wasOpened = true;
    }
    return folder;
}

std::shared_ptr<Descriptor> WalkWorker::openBelowRoot() {
    std::vector<const WalkFolder*> missing{m_folder};
    const WalkFolder* above = m_folder->parent;
    for (;; above = above->parent) {
        while (!m_openFolders.empty() && m_openFolders.back().folder->depth >= above->depth &&
               m_openFolders.back().folder != above) {
            m_openFolders.pop_back();
        }
        if (above->parent == nullptr || (!m_openFolders.empty() && m_openFolders.back().folder == above)) {
            break;
        }
        missing.push_back(above);
    }
    std::shared_ptr<Descriptor> base =
        above->parent == nullptr ? m_state.roots[m_folder->root].descriptor : m_openFolders.back().descriptor;
    std::string path;
    while (!missing.empty()) {
        const WalkFolder& next = *missing.back();
        missing.pop_back();
        path.append(path.empty() ? "" : "/").append(next.name, next.nameLength);
        if (missing.empty() || next.depth % anchorDistance == 0) {
            const int flags = O_NOFOLLOW | (missing.empty() ? openFlags : O_PATH | O_DIRECTORY);
            auto opened = callDisk(DiskCall::open,
                                   [base, path, flags] { return openShared(openPathAt(base->number(), path, flags)); });
            if (missing.empty() || !opened->isOpen()) {
                // A folder that may not be read counts as empty. If not even its status can be read, because its parent
                // may not be searched, it is reported as unreadable.
                if (!opened->isOpen() && errno == EACCES &&
                    !callDisk(DiskCall::open, [base, path] { return fileStatus(base->number(), path.c_str()); })) {
                    m_visitor.unreadable();
                    errno = EACCES;
                }
                return opened;
            }
            base = std::move(opened);
            keepOpen(next, base);
            path.clear();
        }
    }
    return std::make_shared<Descriptor>();
}

void WalkWorker::keepOpen(const WalkFolder& folder, const std::shared_ptr<Descriptor>& descriptor) {
    if (folder.parent == nullptr) {
        return;
    }
    m_openFolders.push_back({&folder, descriptor});
    if (m_openFolders.size() > maximumOpenFolders) {
        // Drops the topmost one; the deeper ones are needed sooner.
        m_openFolders.erase(m_openFolders.begin());
    }
}

void WalkWorker::findHiddenNames() {
    m_hiddenNames = nullptr;
    const HiddenPlaces& hidden = m_state.roots[m_folder->root].hidden;
    if (!hidden.mayHaveNamesIn(m_folder->pathLength)) {
        return;
    }
    std::string path(m_folder->pathLength, '\0');
    std::size_t end = path.size();
    for (const WalkFolder* at = m_folder; at->parent != nullptr; at = at->parent) {
        end -= at->nameLength;
        std::copy_n(at->name, at->nameLength, path.begin() + static_cast<std::ptrdiff_t>(end));
        if (end > 0) {
            path[--end] = '/';
        }
    }
    m_hiddenNames = hidden.namesIn(path);
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
    forEachEntry(
        [&](const dirent64& entry) { mayBeThere = mayBeThere || std::string_view(entry.d_name) == hiddenListName; });
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
        m_visitor.unreadable();
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
        WalkFolder& subfolder = m_folders.emplace_back();
        subfolder.parent = m_folder;
        subfolder.name = m_names.at(m_names.append(name));
        subfolder.nameLength = static_cast<std::uint32_t>(name.size());
        subfolder.pathLength = m_folder->pathLength + subfolder.nameLength + (m_folder->pathLength > 0 ? 1 : 0);
        subfolder.depth = m_folder->depth + 1;
        subfolder.root = m_folder->root;
        m_visitor.subfolder(subfolder);
        m_subfolders.push_back(&subfolder);
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
