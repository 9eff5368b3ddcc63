#include "Foundation/DirectoryWalk.h"

#include "Foundation/FileStatus.h"
#include "Foundation/HiddenPlaces.h"

#include <dirent.h>
#include <fcntl.h>
#include <linux/openat2.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <algorithm>
#include <climits>
#include <cstddef>

namespace {

constexpr int openFlags = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC | O_NONBLOCK;

/// One read of it holds the whole of nearly every folder.
constexpr std::size_t bufferSize = std::size_t{64} * 1024;

/// Opens a folder by a path relative to an open one without following any link on the way, so that a folder replaced
/// by a link while we walk cannot lead out of the root. Where openat2 is not to be had (old kernels, some sandboxes)
/// only the last component is protected.
int openBelow(int base, const char* path) {
    static const bool hasOpenat2 = [] {
        open_how how{};
        how.flags = O_PATH | O_CLOEXEC;
        const long descriptor = syscall(SYS_openat2, AT_FDCWD, "/", &how, sizeof how);
        if (descriptor >= 0) {
            close(static_cast<int>(descriptor));
        }
        return descriptor >= 0;
    }();
    if (!hasOpenat2) {
        return openat(base, path, openFlags);
    }
    open_how how{};
    how.flags = openFlags;
    how.resolve = RESOLVE_NO_SYMLINKS;
    return static_cast<int>(syscall(SYS_openat2, base, path, &how, sizeof how));
}

/// Of the threads that walk: with this a thread of the window that has something to do gets most of a core.
constexpr int niceness = 5;

}  // namespace

/// Lists folders one after the other. Everything in it belongs to its thread; folders it has made are read by the
/// others after they passed through the shared list.
class DirectoryWalk::Worker {
public:
    Worker(DirectoryWalk& walk, WalkVisitor& visitor)
        : m_walk(walk), m_visitor(visitor), m_buffer(std::make_unique_for_overwrite<char[]>(bufferSize)) {}

    void run() {
        while (WalkFolder* folder = m_walk.take()) {
            list(*folder);
            m_walk.give(m_found);
        }
    }

private:
    void list(WalkFolder& folder) {
        const int descriptor = open(folder);
        m_visitor.beginFolder(folder);
        if (descriptor < 0) {
            return;
        }
        m_hiddenHere = m_walk.m_hiddenPlaces->namesIn(m_path);
        bool first = true;
        ssize_t size = 0;
        while (!m_walk.m_stop.stop_requested() && (size = getdents64(descriptor, m_buffer.get(), bufferSize)) > 0) {
            if (first) {
                readHiddenList(descriptor, static_cast<std::size_t>(size));
                first = false;
            }
            forEachEntry(static_cast<std::size_t>(size),
                         [&](const dirent64& entry) { visit(folder, descriptor, entry); });
        }
        close(descriptor);
    }

    /// Opens the folder and leaves its path relative to the root in `m_path`.
    int open(const WalkFolder& folder) {
        m_path.resize(folder.pathLength);
        std::size_t end = m_path.size();
        for (const WalkFolder* at = &folder; at->parent != nullptr; at = at->parent) {
            end -= at->nameLength;
            std::copy_n(at->name, at->nameLength, m_path.begin() + static_cast<std::ptrdiff_t>(end));
            if (end > 0) {
                m_path[--end] = '/';
            }
        }
        if (m_path.empty()) {
            return openBelow(m_walk.m_rootDescriptor, ".");
        }
        return m_path.size() < PATH_MAX ? openBelow(m_walk.m_rootDescriptor, m_path.c_str()) : openInSteps();
    }

    /// A path too long for one call is opened piece by piece.
    int openInSteps() {
        int base = m_walk.m_rootDescriptor;
        for (std::size_t begin = 0; begin < m_path.size();) {
            std::size_t end = m_path.size();
            if (end - begin >= PATH_MAX) {
                end = m_path.rfind('/', begin + PATH_MAX - 1);
            }
            const int next = openBelow(base, m_path.substr(begin, end - begin).c_str());
            if (base != m_walk.m_rootDescriptor) {
                close(base);
            }
            if (next < 0) {
                return next;
            }
            base = next;
            begin = end + 1;
        }
        return base;
    }

    template <class Visit>
    void forEachEntry(std::size_t size, Visit visit) const {
        for (std::size_t at = 0; at < size;) {
            // The kernel aligns each entry to eight bytes.
            const auto& entry = *reinterpret_cast<const dirent64*>(m_buffer.get() + at);  // NOLINT
            visit(entry);
            at += entry.d_reclen;
        }
    }

    /// A folder may list names to hide in its ".hidden". Nearly every folder fits the first read, and a look through
    /// that tells for nothing that there is none; otherwise the file is asked for.
    void readHiddenList(int descriptor, std::size_t size) {
        bool present = size > bufferSize / 2;
        if (!present) {
            forEachEntry(size, [&](const dirent64& entry) {
                present = present || std::string_view(entry.d_name) == hiddenListName;
            });
        }
        if (present) {
            m_hiddenList = hiddenNames(descriptor);
            m_hiddenHere = m_hiddenHere == nullptr ? &m_hiddenList : &m_hiddenList.merge(*m_hiddenHere);
        }
    }

    void visit(const WalkFolder& folder, int descriptor, const dirent64& entry) {
        const std::string_view name = entry.d_name;
        if (name.front() == '.' || (m_hiddenHere != nullptr && m_hiddenHere->contains(name))) {
            return;
        }
        unsigned char type = entry.d_type;
        if (type == DT_UNKNOWN) {
            const std::optional<FileStatus> status = fileStatus(descriptor, entry.d_name);
            if (!status) {
                m_visitor.unreadable();
                return;
            }
            type = static_cast<unsigned char>(IFTODT(status->mode));
        }
        if (type == DT_REG) {
            m_visitor.file(descriptor, name);
        } else if (type == DT_DIR && m_walk.m_policy(name)) {
            const std::uint32_t position = m_names.append(name);
            WalkFolder& found = m_folders.emplace_back();
            found.parent = &folder;
            found.name = m_names.at(position);
            found.nameLength = static_cast<std::uint32_t>(name.size());
            found.pathLength = folder.pathLength + found.nameLength + (folder.pathLength > 0 ? 1 : 0);
            m_visitor.subfolder(found);
            m_found.push_back(&found);
        }
    }

    DirectoryWalk& m_walk;
    WalkVisitor& m_visitor;
    std::unique_ptr<char[]> m_buffer;
    NameArena m_names;
    std::deque<WalkFolder> m_folders;
    std::vector<WalkFolder*> m_found;  ///< Subfolders of the folder being listed.
    std::string m_path;
    NameSet m_hiddenList;
    const NameSet* m_hiddenHere = nullptr;
};

DirectoryWalk::DirectoryWalk(const FileURL& root, Policy policy, std::stop_token stop,
                             const std::vector<MountPoint>& mounts)
    : m_policy(std::move(policy)),
      m_stop(std::move(stop)),
      m_rootDescriptor(::open(root.path().c_str(), openFlags & ~O_NOFOLLOW)),
      m_hiddenPlaces(std::make_unique<HiddenPlaces>(root, mounts)) {
    m_pending.push_back(&m_root);
}

DirectoryWalk::~DirectoryWalk() {
    join();
    if (isOpen()) {
        close(m_rootDescriptor);
    }
}

void DirectoryWalk::run(WalkVisitor& visitor) {
    if (isOpen()) {
        m_workers.push_back(std::make_unique<Worker>(*this, visitor));
        m_workers.back()->run();
    }
}

void DirectoryWalk::start(const std::vector<WalkVisitor*>& visitors, std::function<void()> finished) {
    m_finished = std::move(finished);
    for (WalkVisitor* visitor : visitors) {
        m_workers.push_back(std::make_unique<Worker>(*this, *visitor));
    }
    for (const auto& worker : m_workers) {
        m_threads.emplace_back([&worker = *worker] {
            // More threads than cores are at work; what a person looks at comes first.
            (void)setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), niceness);
            worker.run();
        });
    }
}

void DirectoryWalk::join() {
    for (std::thread& thread : m_threads) {
        thread.join();
    }
    m_threads.clear();
}

unsigned DirectoryWalk::recommendedThreads() {
    return std::clamp(2 * std::thread::hardware_concurrency(), 4U, 8U);
}

/// The folder to list next, the one found last, so that few are pending at a time; none when the walk is over.
WalkFolder* DirectoryWalk::take() {
    std::unique_lock lock(m_mutex);
    while (m_pending.empty() && m_busy > 0) {
        ++m_waiting;
        m_changed.wait(lock);
        --m_waiting;
    }
    if (m_pending.empty() || m_stop.stop_requested()) {
        m_pending.clear();
        m_changed.notify_all();
        if (m_busy == 0 && m_finished) {
            std::exchange(m_finished, nullptr)();
        }
        return nullptr;
    }
    WalkFolder* folder = m_pending.back();
    m_pending.pop_back();
    ++m_busy;
    return folder;
}

/// Hands the subfolders of a listed folder over to whoever comes first.
void DirectoryWalk::give(std::vector<WalkFolder*>& folders) {
    const std::lock_guard lock(m_mutex);
    --m_busy;
    m_pending.insert(m_pending.end(), folders.rbegin(), folders.rend());
    if (m_waiting > 0) {
        if (folders.size() > 1 || m_busy == 0) {
            m_changed.notify_all();
        } else if (!folders.empty()) {
            m_changed.notify_one();
        }
    }
    folders.clear();
}
