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

/// How long the main thread waits for all volumes, and how long once "/" has answered. A key pressed meanwhile should
/// be handled within a tenth of a second.
constexpr std::chrono::milliseconds totalTimeout{400};
constexpr std::chrono::milliseconds rootTimeout{60};

/// A file system of the mount table and its answer.
struct Row {
    std::vector<Mount> mounts;  ///< Its mounts, in the order in which they are tried.
    bool hasAnswered = false;
    Mount mount;  ///< The mount that answered.
    std::optional<VolumeValues> values;

    [[nodiscard]] bool isRoot() const { return mounts.front().target == "/"; }
};

/// Whether a FUSE layer over a folder of another disk reports that disk's values. `available` may differ a little,
/// because files may be written between the two queries. The values of cloud storage are invented and may be equal by
/// chance, so two FUSE file systems are never compared.
bool isLayerOver(const Row& layer, const Row& disk) {
    constexpr std::int64_t fewBytes = 64'000'000;
    return disk.values && isFuse(layer.mount) && !isFuse(disk.mount) && layer.values->total == disk.values->total &&
           std::abs(layer.values->available.value_or(0) - disk.values->available.value_or(0)) < fewBytes;
}

}  // namespace

/// The state shared by the main thread and the querying threads.
class SystemVolumes::Query : public std::enable_shared_from_this<Query> {
public:
    explicit Query(Sources sources) : m_sources(std::move(sources)) {}

    /// Starts a new query and waits for the first answers. Main thread only.
    [[nodiscard]] Answers begin(std::function<void(const Answers&)> later);

    /// After this, no callback is called any more. Main thread only.
    void end() { m_later = nullptr; }

private:
    void readTable();
    void queryRow(const std::vector<Mount>& mounts);
    void storeAnswer(const std::vector<Mount>& mounts, const Mount& mount, std::optional<VolumeValues> values);
    void report();

    /// The following require the mutex.
    [[nodiscard]] bool isComplete() const {
        return !m_isReadingTable &&
               std::all_of(m_rows.begin(), m_rows.end(), [](const Row& row) { return row.hasAnswered; });
    }
    [[nodiscard]] bool hasRoot() const {
        return std::any_of(m_rows.begin(), m_rows.end(),
                           [](const Row& row) { return row.isRoot() && row.hasAnswered; });
    }
    [[nodiscard]] Answers answers() const;

    const Sources m_sources;
    std::function<void(const Answers&)> m_later;  ///< Callback of the newest query. Main thread only.
    Answers m_reported;                           ///< What that callback was last told. Main thread only.

    std::mutex m_mutex;  ///< Guards the members below.
    std::condition_variable m_changed;
    bool m_isReadingTable = false;
    bool m_isWaiting = false;  ///< The main thread waits and reads the answers itself.
    std::vector<Row> m_rows;   ///< Of the newest query; empty until the table is read.
    std::set<std::uint64_t>
        m_pendingDevices;  ///< Devices that have not answered yet, including those of earlier queries.
};

MountedVolumes::Answers SystemVolumes::Query::begin(std::function<void(const Answers&)> later) {
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
    m_changed.wait_until(lock, start + rootTimeout, [this] { return isComplete(); });
    m_changed.wait_until(lock, start + totalTimeout, [this] { return isComplete() || hasRoot(); });
    m_isWaiting = false;
    return m_reported = answers();
}

void SystemVolumes::Query::readTable() {
    const std::optional<std::vector<Mount>> table = m_sources.table();
    std::vector<std::vector<Mount>> toQuery;
    {
        const std::lock_guard lock(m_mutex);
        m_isReadingTable = false;
        for (const std::vector<Mount>& mounts : visibleDisks(table.value_or(std::vector{Mount{}}))) {
            m_rows.emplace_back().mounts = mounts;
            if (m_pendingDevices.insert(mounts.front().device).second) {
                toQuery.push_back(mounts);
            }
        }
    }
    m_changed.notify_all();
    for (const std::vector<Mount>& mounts : toQuery) {
        if (Threads::start([self = shared_from_this(), mounts] { self->queryRow(mounts); })) {
            continue;
        }
        // No thread can be started: only "/" is queried on this thread, because any other disk might block it forever.
        // The others are left out until the next query.
        if (mounts.front().target == "/") {
            queryRow(mounts);
        } else {
            storeAnswer(mounts, mounts.front(), std::nullopt);
        }
    }
}

void SystemVolumes::Query::queryRow(const std::vector<Mount>& mounts) {
    std::optional<VolumeValues> values;
    auto mount = mounts.begin();
    while (!(values = m_sources.values(*mount)) && mount + 1 != mounts.end()) {
        ++mount;
    }
    storeAnswer(mounts, *mount, std::move(values));
}

void SystemVolumes::Query::storeAnswer(const std::vector<Mount>& mounts, const Mount& mount,
                                       std::optional<VolumeValues> values) {
    const std::lock_guard lock(m_mutex);
    m_pendingDevices.erase(mounts.front().device);
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

void SystemVolumes::Query::report() {
    std::unique_lock lock(m_mutex);
    Answers now = answers();
    lock.unlock();
    if (m_later && now != m_reported) {
        m_reported = std::move(now);
        // A copy, because the callback may start a new query, which replaces `m_later`.
        const std::function<void(const Answers&)> later = m_later;
        later(m_reported);
    }
}

MountedVolumes::Answers SystemVolumes::Query::answers() const {
    Answers answers;
    for (const Row& row : m_rows) {
        const auto isBelow = [&](const Row& other) { return isLayerOver(row, other); };
        if (row.values && std::none_of(m_rows.begin(), m_rows.end(), isBelow)) {
            answers.push_back({FileURL(row.mount.target), *row.values});
        }
    }
    return answers;
}

SystemVolumes::SystemVolumes() : SystemVolumes(Sources{}) {}

SystemVolumes::SystemVolumes(Sources sources) : m_query(std::make_shared<Query>(std::move(sources))) {}

SystemVolumes::~SystemVolumes() {
    m_query->end();
}

MountedVolumes::Answers SystemVolumes::ask(std::function<void(const Answers&)> later) {
    return m_query->begin(std::move(later));
}
