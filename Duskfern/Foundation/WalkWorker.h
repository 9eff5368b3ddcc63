#pragma once

#include "Foundation/NameArena.h"
#include "Foundation/WalkState.h"

#include <dirent.h>

#include <atomic>
#include <deque>

/// Thrown on a thread that was left behind while it waited for a disk: nothing of the worker is its own any more.
struct LeftBehind {};

/// A thread's calls to disks, seen by the thread that watches it. A thread can be left behind during a call and at no
/// other time, so that what it had done before is complete and it changes nothing after.
class WatchedCalls {
public:
    /// The calling thread begins to wait.
    void enter() { m_count.store(++m_own, std::memory_order_release); }

    /// It has been answered; false when it was left behind meanwhile.
    [[nodiscard]] bool leave() {
        std::uint64_t expected = m_own++;
        return m_count.compare_exchange_strong(expected, m_own, std::memory_order_acq_rel);
    }

    /// For the watching thread: a number that is the same as before only if the same call still waits, if it is odd, or
    /// the thread has worked on all the time.
    [[nodiscard]] std::uint64_t count() const { return m_count.load(std::memory_order_relaxed); }

    /// Leaves the thread behind if it still waits in the call with that number.
    [[nodiscard]] bool leaveBehind(std::uint64_t count) {
        return count % 2 == 1 && m_count.compare_exchange_strong(count, leftBehind, std::memory_order_acq_rel);
    }

private:
    static constexpr std::uint64_t leftBehind = ~std::uint64_t{0};

    std::uint64_t m_own = 0;  ///< Of the calling thread alone.
    std::atomic<std::uint64_t> m_count = 0;
};

/// Lists folders one after the other. Runs on one thread at a time; when that one is left behind another one goes on
/// where it stood. Folders it has made are read by other workers after they passed through the shared list.
class WalkWorker {
public:
    WalkWorker(WalkState& state, WalkVisitor& visitor) : m_state(state), m_visitor(visitor) {}

    /// Works until there is nothing left to do. Throws `LeftBehind`.
    void run(WatchedCalls& calls);

private:
    /// What the thread waits for.
    enum class Waiting { toOpen, toList, toExamine };

    /// A folder that is kept open because others below it are likely to be opened next.
    struct OpenFolder {
        const WalkFolder* folder;
        std::shared_ptr<Descriptor> descriptor;
    };

    /// Makes a call that may never return. The call writes to nothing but its result and what its thread owns.
    template <class Call>
    auto ask(Waiting waiting, Call call);

    void begin();
    void list();
    void finish();
    void goOnAfterSilence();
    void passOver();

    [[nodiscard]] bool open();
    [[nodiscard]] std::shared_ptr<Descriptor> openRoot();
    [[nodiscard]] std::shared_ptr<Descriptor> openBelowRoot();
    void keepOpen(const WalkFolder& folder, const std::shared_ptr<Descriptor>& descriptor);
    void rememberHiddenNames();
    void readMore();
    void readHiddenList();
    void visit(const dirent64& entry);
    void examineOthers();
    [[nodiscard]] std::optional<FileStatus> status(const char* name);

    template <class Visit>
    void forEachEntry(Visit visit) const;

    WalkState& m_state;
    WalkVisitor& m_visitor;
    WatchedCalls* m_calls = nullptr;  ///< Of the thread that runs now.
    Waiting m_waiting = Waiting::toOpen;

    WalkFolder* m_folder = nullptr;  ///< The one being listed.
    bool m_hasBegun = false;         ///< Whether the visitor knows.
    std::shared_ptr<Descriptor> m_descriptor;
    std::shared_ptr<char[]> m_buffer;
    std::size_t m_size = 0;  ///< Bytes of entries in the buffer.
    std::size_t m_at = 0;    ///< The entry to visit next.
    bool m_isFirstRead = true;
    bool m_isRead = false;    ///< Whether the folder has no more entries than those read.
    bool m_isSilent = false;  ///< Whether it did not answer when asked for more.
    int m_silences = 0;       ///< Entries of this folder that did not answer.

    bool m_hasExamined = false;  ///< Whether the status of any entry of this folder could be read.
    bool m_mayNotExamine = false;
    std::int64_t m_others = 0;  ///< Entries that are neither files nor folders.
    std::string m_anyOther;     ///< The name of one of them.

    std::vector<OpenFolder> m_open;  ///< Each below the one before.
    std::deque<WalkFolder> m_folders;
    NameArena m_names;
    std::vector<WalkFolder*> m_found;  ///< Subfolders of the folder being listed.
    NameSet m_hiddenList;
    const NameSet* m_hiddenHere = nullptr;
};
