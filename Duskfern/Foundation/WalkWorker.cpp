#include "Foundation/WalkWorker.h"

#include "Foundation/OpenPath.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstddef>
#include <new>

namespace {

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_CLOEXEC | O_NONBLOCK;

/// One read of it holds the whole of nearly every folder.
constexpr std::size_t bufferSize = std::size_t{64} * 1024;

/// In deep trees every folder of such a depth is kept open, so that none is opened over a long way.
constexpr std::uint32_t anchorDistance = 32;

/// No more folders are kept open by one worker.
constexpr std::size_t maximumOpenFolders = 16;

/// Keeps errno.
std::shared_ptr<Descriptor> openShared(Descriptor descriptor) {
    const int error = errno;
    auto shared = std::make_shared<Descriptor>(std::move(descriptor));
    errno = error;
    return shared;
}

/// The path of an open folder without links, as the kernel knows it; the one it was opened by where it does not tell.
std::string realPathOf(const Descriptor& folder, const FileURL& url) {
    std::array<char, PATH_MAX> path{};
    const std::string entry = "/proc/self/fd/" + std::to_string(folder.number());
    const ssize_t length = readlink(entry.c_str(), path.data(), path.size());
    return length > 0 && length < PATH_MAX ? std::string(path.data(), static_cast<std::size_t>(length)) : url.path();
}

}  // namespace

template <class Call>
auto WalkWorker::ask(Waiting waiting, Call call) {
    m_waiting = waiting;
    WatchedCalls& calls = *m_calls;
    const auto comeBack = [&calls] {
        const int error = errno;
        if (!calls.leave()) {
            throw LeftBehind();
        }
        errno = error;
    };
    calls.enter();
    try {
        auto answer = call();
        comeBack();
        return answer;
    } catch (const std::bad_alloc&) {
        comeBack();
        throw;
    }
}

void WalkWorker::run(WatchedCalls& calls) {
    m_calls = &calls;
    if (m_folder != nullptr) {
        goOnAfterSilence();
    }
    while (m_folder != nullptr || (m_folder = m_state.take()) != nullptr) {
        try {
            if (!m_hasBegun && !open()) {
                return;
            }
            list();
            if (m_isSilent) {
                passOver();
                continue;
            }
            examineOthers();
        } catch (const std::bad_alloc&) {
            m_visitor.unreadable();
        }
        finish();
    }
}

/// Another thread waits, perhaps for good, for what this worker wanted to know last.
void WalkWorker::goOnAfterSilence() {
    begin();
    m_visitor.unreadable();
    // One entry that is silent may be an exception, a second one tells of the disk.
    if (m_waiting == Waiting::toExamine && ++m_silences == 1) {
        return;
    }
    if (m_waiting == Waiting::toList && m_at < m_size) {
        // The names that were read still count. The other thread writes behind them.
        m_isSilent = true;
        return;
    }
    passOver();
}

void WalkWorker::passOver() {
    m_buffer.reset();
    m_state.passOverMountOf(*m_folder);
    finish();
}

void WalkWorker::begin() {
    if (!std::exchange(m_hasBegun, true)) {
        m_visitor.beginFolder(*m_folder);
    }
}

void WalkWorker::finish() {
    m_state.give(*m_folder, m_found);
    m_folder = nullptr;
    m_hasBegun = false;
    m_descriptor.reset();
    m_size = 0;
    m_at = 0;
    m_isFirstRead = true;
    m_isRead = false;
    m_isSilent = false;
    m_silences = 0;
    m_hasExamined = false;
    m_mayNotExamine = false;
    m_others = 0;
}

/// Opens the folder and tells the visitor. False when another worker has to do it and this one is to end.
bool WalkWorker::open() {
    const auto openOnce = [this] { return m_folder->parent == nullptr ? openRoot() : openBelowRoot(); };
    m_descriptor = openOnce();
    if (!m_descriptor->isOpen() && isShortage(errno)) {
        m_open.clear();
        m_descriptor = openOnce();
        if (!m_descriptor->isOpen() && isShortage(errno)) {
            if (m_state.giveBack(*m_folder)) {
                m_folder = nullptr;
                return false;
            }
            m_visitor.unreadable();
        }
    }
    begin();
    if (m_descriptor->isOpen()) {
        // Only the owner may ask for this; other people's folders are read as usual.
        (void)fcntl(m_descriptor->number(), F_SETFL, O_NONBLOCK | O_NOATIME);
        keepOpen(*m_folder, m_descriptor);
        rememberHiddenNames();
    }
    return true;
}

std::shared_ptr<Descriptor> WalkWorker::openRoot() {
    WalkState::Root& root = m_state.roots[m_folder->root];
    auto folder = ask(Waiting::toOpen, [&url = root.place.url] { return openShared(openPath(url, openFlags)); });
    if (folder->isOpen()) {
        const std::string path = realPathOf(*folder, root.place.url);
        const std::lock_guard lock(m_state.mutex);
        root.path = path;
        root.hidden = HiddenPlaces(path, m_state.mounts, root.place.except);
        root.descriptor = folder;
        root.wasOpened = true;
    }
    return folder;
}

std::shared_ptr<Descriptor> WalkWorker::openBelowRoot() {
    std::vector<const WalkFolder*> way{m_folder};
    const WalkFolder* above = m_folder->parent;
    for (;; above = above->parent) {
        while (!m_open.empty() && m_open.back().folder->depth >= above->depth && m_open.back().folder != above) {
            m_open.pop_back();
        }
        if (above->parent == nullptr || (!m_open.empty() && m_open.back().folder == above)) {
            break;
        }
        way.push_back(above);
    }
    std::shared_ptr<Descriptor> base =
        above->parent == nullptr ? m_state.roots[m_folder->root].descriptor : m_open.back().descriptor;
    std::string path;
    while (!way.empty()) {
        const WalkFolder& next = *way.back();
        way.pop_back();
        path.append(path.empty() ? "" : "/").append(next.name, next.nameLength);
        if (way.empty() || next.depth % anchorDistance == 0) {
            const int flags = O_NOFOLLOW | (way.empty() ? openFlags : O_PATH | O_DIRECTORY);
            auto opened = ask(Waiting::toOpen,
                              [base, path, flags] { return openShared(openPathAt(base->number(), path, flags)); });
            if (way.empty() || !opened->isOpen()) {
                // A folder that may not be read counts as empty; one below a folder whose entries may not be examined
                // counts as an entry that cannot be.
                if (!opened->isOpen() && errno == EACCES &&
                    !ask(Waiting::toOpen, [base, path] { return fileStatus(base->number(), path.c_str()); })) {
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
    m_open.push_back({&folder, descriptor});
    if (m_open.size() > maximumOpenFolders) {
        // The way up is long; what is near is needed next.
        m_open.erase(m_open.begin());
    }
}

void WalkWorker::rememberHiddenNames() {
    m_hiddenHere = nullptr;
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
    m_hiddenHere = hidden.namesIn(path);
}

void WalkWorker::list() {
    if (!m_descriptor->isOpen()) {
        return;
    }
    if (m_buffer == nullptr) {
        m_buffer = std::shared_ptr<char[]>(new char[bufferSize]);
    }
    for (;;) {
        while (m_at < m_size) {
            // The kernel aligns each entry to eight bytes.
            const auto& entry = *reinterpret_cast<const dirent64*>(m_buffer.get() + m_at);  // NOLINT
            // Whoever goes on after this entry was silent begins with the next one.
            m_at += entry.d_reclen;
            visit(entry);
        }
        if (m_isRead || m_isSilent || m_state.stop.stop_requested()) {
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

/// Reads entries into the buffer, behind those that are in it.
void WalkWorker::readMore() {
    const ssize_t size = ask(Waiting::toList, [folder = m_descriptor, buffer = m_buffer, from = m_size] {
        return getdents64(folder->number(), buffer.get() + from, bufferSize - from);
    });
    if (size > 0) {
        m_size += static_cast<std::size_t>(size);
    } else {
        m_isRead = true;
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

/// A folder may list names to hide in its ".hidden". Nearly every folder fits the buffer, in one read or, where the
/// file system gives few entries at a time, in several; a look through that tells for nothing that there is none.
/// Otherwise the file is asked for.
void WalkWorker::readHiddenList() {
    while (!m_isRead && m_size <= bufferSize / 2) {
        readMore();
    }
    bool mayBeThere = !m_isRead;
    forEachEntry(
        [&](const dirent64& entry) { mayBeThere = mayBeThere || std::string_view(entry.d_name) == hiddenListName; });
    if (mayBeThere) {
        m_hiddenList = ask(Waiting::toExamine, [folder = m_descriptor] { return hiddenNames(folder->number()); });
        m_hiddenHere = m_hiddenHere == nullptr ? &m_hiddenList : &m_hiddenList.merge(*m_hiddenHere);
    }
}

std::optional<FileStatus> WalkWorker::status(const char* name) {
    // The number rather than its owner: by the time a thread that was left behind gets there, the owner may be gone.
    // The name is read by the kernel alone.
    const auto found =
        ask(Waiting::toExamine, [folder = m_descriptor->number(), name] { return fileStatus(folder, name); });
    m_hasExamined = m_hasExamined || found;
    m_mayNotExamine = m_mayNotExamine || (!found && errno == EACCES);
    if (!found) {
        m_visitor.unreadable();
    }
    return found;
}

void WalkWorker::visit(const dirent64& entry) {
    const std::string_view name = entry.d_name;
    if (name.front() == '.' || (m_hiddenHere != nullptr && m_hiddenHere->contains(name))) {
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
        if (++m_others == 1) {
            m_anyOther = name;
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
        m_found.push_back(&subfolder);
    }
}

/// Links and special files are passed over unseen, but where the folder does not let anybody examine its entries they
/// count as the others do.
void WalkWorker::examineOthers() {
    if (m_others == 0 || m_hasExamined) {
        return;
    }
    std::int64_t uncounted = m_others;
    if (!m_mayNotExamine) {
        if (status(m_anyOther.c_str())) {
            return;
        }
        --uncounted;
    }
    for (; m_mayNotExamine && uncounted > 0; --uncounted) {
        m_visitor.unreadable();
    }
}
