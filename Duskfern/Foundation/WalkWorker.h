#pragma once

#include "Foundation/WalkState.h"
#include "Foundation/WatchedCalls.h"

#include <dirent.h>

/// Lists folders one after the other. Runs on one thread at a time; when that is abandoned, another one continues from
/// the recorded state.
class WalkWorker {
public:
    WalkWorker(WalkState& state, WalkVisitor& visitor) : m_state(state), m_visitor(visitor) {}

    /// Lists folders until the walk is over. Throws `ThreadAbandoned`.
    void run(WatchedCalls& calls);

private:
    /// The kind of disk call in progress.
    enum class DiskCall { open, list, stat };

    /// Makes a disk call that may never return. `call` must write to nothing but its result and what its thread owns.
    template <class Call>
    auto callDisk(DiskCall kind, Call call);

    void beginFolder();
    void listEntries();
    void finishFolder();
    void resumeAfterTimeout();
    void skipMount();

    [[nodiscard]] bool open();
    void openOnce();
    [[nodiscard]] bool isShort() const;
    [[nodiscard]] bool openDespiteShortage();
    [[nodiscard]] std::shared_ptr<Descriptor> openRoot(int flags);
    [[nodiscard]] std::shared_ptr<Descriptor> openBelowRoot(int flags);
    [[nodiscard]] std::shared_ptr<Descriptor> openFrom(const std::shared_ptr<Descriptor>& base, const std::string& path,
                                                       int flags);
    void findHiddenNames();
    void readMore();
    void readHiddenList();
    void visit(const dirent64& entry);
    void examineSpecialFiles();
    [[nodiscard]] std::optional<FileStatus> status(const char* name);

    template <class Visit>
    void forEachEntry(Visit visit) const;

    WalkState& m_state;
    WalkVisitor& m_visitor;
    WatchedCalls* m_calls = nullptr;  ///< Of the current thread.
    DiskCall m_diskCall = DiskCall::open;

    /// Tries to open a folder that failed for a shortage since one succeeded.
    int m_shortages = 0;

    /// Whether all folders so far could be opened with O_NOATIME, which only their owner may do.
    bool m_ownsFolders = true;

    WalkStep m_step;          ///< The folder being listed.
    bool m_hasBegun = false;  ///< Whether the visitor was told of the folder.
    std::shared_ptr<Descriptor> m_descriptor;
    std::shared_ptr<char[]> m_buffer;
    std::size_t m_size = 0;  ///< Bytes of entries in the buffer.
    std::size_t m_at = 0;    ///< Offset of the entry to visit next.
    bool m_isFirstRead = true;
    bool m_isAtEnd = false;      ///< Whether all entries of the folder are read.
    bool m_hasTimedOut = false;  ///< Whether reading more entries timed out.
    int m_timeouts = 0;          ///< Entries of this folder whose status timed out.

    bool m_hasStatus = false;  ///< Whether the status of any entry of this folder was read.
    bool m_isStatDenied = false;
    std::int64_t m_specialCount = 0;  ///< Entries that are neither files nor folders.
    std::string m_specialName;        ///< The name of the first of them.

    std::vector<std::shared_ptr<WalkFolder>> m_subfolders;  ///< Found in the folder being listed.
    NameSet m_hiddenList;
    const NameSet* m_hiddenNames = nullptr;
};
