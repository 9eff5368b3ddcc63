#include "Desktop/SystemVolumes.h"

#include "Desktop/VisibleDisks.h"
#include "Foundation/Dispatch.h"
#include "Foundation/Threads.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <mutex>
#include <set>

namespace {

/// How long the window may wait for all volumes together, and how long when the disk that matters most has answered:
/// a key pressed meanwhile is to be answered within a tenth of a second.
constexpr std::chrono::milliseconds deadline{400};
constexpr std::chrono::milliseconds patience{60};

/// One file system of the mount table and what came of asking it.
struct Row {
    std::vector<Mount> mounts;  ///< Where it may be asked, the best place first.
    bool hasAnswered = false;
    Mount mount;  ///< The one of them that answered.
    std::optional<VolumeValues> values;

    [[nodiscard]] bool isRoot() const { return mounts.front().target == "/"; }
};

/// A FUSE file system over a folder of another disk says of itself what that disk says; between the two questions
/// something may have been written there. What clouds say is invented, and may be the same for two of them.
bool repeats(const Row& layer, const Row& disk) {
    constexpr std::int64_t fewBytes = 64'000'000;
    return disk.values && isFuse(layer.mount) && !isFuse(disk.mount) && layer.values->total == disk.values->total &&
           std::abs(layer.values->available.value_or(0) - disk.values->available.value_or(0)) < fewBytes;
}

}  // namespace

/// What the main thread and the asking threads share.
class SystemVolumes::Inquiry : public std::enable_shared_from_this<Inquiry> {
public:
    explicit Inquiry(Questions questions) : m_questions(std::move(questions)) {}

    /// Begins anew, on the main thread, and waits for the first answers.
    [[nodiscard]] Answers begin(std::function<void(const Answers&)> later);

    /// Calls nobody any more.
    void end() { m_later = nullptr; }

private:
    void readTable();
    void askRow(const std::vector<Mount>& mounts);
    void settle(const std::vector<Mount>& mounts, const Mount& mount, std::optional<VolumeValues> values);
    void report();

    /// The following are called with the mutex held.
    [[nodiscard]] bool isComplete() const {
        return !m_isReadingTable &&
               std::all_of(m_rows.begin(), m_rows.end(), [](const Row& row) { return row.hasAnswered; });
    }
    [[nodiscard]] bool hasRoot() const {
        return std::any_of(m_rows.begin(), m_rows.end(),
                           [](const Row& row) { return row.isRoot() && row.hasAnswered; });
    }
    [[nodiscard]] Answers answers() const;

    const Questions m_questions;
    std::function<void(const Answers&)> m_later;  ///< Of the newest round. Main thread only.
    Answers m_reported;                           ///< What the newest round was told last. Main thread only.

    std::mutex m_mutex;  ///< Guards what follows.
    std::condition_variable m_changed;
    bool m_isReadingTable = false;
    bool m_isWaiting = false;          ///< The main thread will look at the answers by itself.
    std::vector<Row> m_rows;           ///< Of the newest round; none until the table has been read.
    std::set<std::uint64_t> m_silent;  ///< Devices that have not answered yet, in this round or an earlier one.
};

MountedVolumes::Answers SystemVolumes::Inquiry::begin(std::function<void(const Answers&)> later) {
    const auto start = std::chrono::steady_clock::now();
    m_later = std::move(later);
    std::unique_lock lock(m_mutex);
    m_rows.clear();
    m_isWaiting = true;
    if (!std::exchange(m_isReadingTable, true)) {
        lock.unlock();
        if (!Threads::start([self = shared_from_this()] { self->readTable(); })) {
            readTable();
        }
        lock.lock();
    }
    m_changed.wait_until(lock, start + patience, [this] { return isComplete(); });
    m_changed.wait_until(lock, start + deadline, [this] { return isComplete() || hasRoot(); });
    m_isWaiting = false;
    return m_reported = answers();
}

void SystemVolumes::Inquiry::readTable() {
    const std::optional<std::vector<Mount>> table = m_questions.table();
    std::vector<std::vector<Mount>> unasked;
    {
        const std::lock_guard lock(m_mutex);
        m_isReadingTable = false;
        for (const std::vector<Mount>& mounts : visibleDisks(table.value_or(std::vector{Mount{}}))) {
            m_rows.emplace_back().mounts = mounts;
            if (m_silent.insert(mounts.front().device).second) {
                unasked.push_back(mounts);
            }
        }
    }
    m_changed.notify_all();
    for (const std::vector<Mount>& mounts : unasked) {
        if (Threads::start([self = shared_from_this(), mounts] { self->askRow(mounts); })) {
            continue;
        }
        // Without a thread to be had, only the disk that the program itself comes from is asked: another one might hold
        // this thread up for good. It is left out until the next time.
        if (mounts.front().target == "/") {
            askRow(mounts);
        } else {
            settle(mounts, mounts.front(), std::nullopt);
        }
    }
}

void SystemVolumes::Inquiry::askRow(const std::vector<Mount>& mounts) {
    std::optional<VolumeValues> values;
    auto mount = mounts.begin();
    while (!(values = m_questions.values(*mount)) && mount + 1 != mounts.end()) {
        ++mount;
    }
    settle(mounts, *mount, std::move(values));
}

void SystemVolumes::Inquiry::settle(const std::vector<Mount>& mounts, const Mount& mount,
                                    std::optional<VolumeValues> values) {
    const std::lock_guard lock(m_mutex);
    m_silent.erase(mounts.front().device);
    const auto row = std::find_if(m_rows.begin(), m_rows.end(), [&](const Row& candidate) {
        return candidate.mounts.front().device == mounts.front().device;
    });
    if (row == m_rows.end()) {
        return;
    }
    row->hasAnswered = true;
    row->mount = mount;
    row->values = std::move(values);
    m_changed.notify_all();
    if (!m_isWaiting) {
        Dispatch::main([self = shared_from_this()] { self->report(); });
    }
}

void SystemVolumes::Inquiry::report() {
    std::unique_lock lock(m_mutex);
    Answers now = answers();
    lock.unlock();
    if (m_later && now != m_reported) {
        m_reported = std::move(now);
        // What is called may begin a new round, which replaces the function.
        const std::function<void(const Answers&)> later = m_later;
        later(m_reported);
    }
}

MountedVolumes::Answers SystemVolumes::Inquiry::answers() const {
    Answers answers;
    for (const Row& row : m_rows) {
        const auto isBelow = [&](const Row& other) { return repeats(row, other); };
        if (row.values && std::none_of(m_rows.begin(), m_rows.end(), isBelow)) {
            answers.push_back({FileURL(row.mount.target), *row.values});
        }
    }
    return answers;
}

SystemVolumes::SystemVolumes() : SystemVolumes(Questions{}) {}

SystemVolumes::SystemVolumes(Questions questions) : m_inquiry(std::make_shared<Inquiry>(std::move(questions))) {}

SystemVolumes::~SystemVolumes() {
    m_inquiry->end();
}

MountedVolumes::Answers SystemVolumes::ask(std::function<void(const Answers&)> later) {
    return m_inquiry->begin(std::move(later));
}
