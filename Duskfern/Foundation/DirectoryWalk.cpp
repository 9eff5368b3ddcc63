#include "Foundation/DirectoryWalk.h"

#include "Foundation/DiskTimeout.h"
#include "Foundation/Threads.h"
#include "Foundation/WalkState.h"
#include "Foundation/WalkWorker.h"

#include <algorithm>
#include <chrono>
#include <mutex>
#include <thread>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::nanoseconds;

/// How often the worker threads are checked for timeouts, their number is adapted and progress is reported.
constexpr std::chrono::milliseconds tickInterval{10};

/// What the watching thread records about the thread of one worker.
struct Watched {
    std::shared_ptr<WatchedCalls> calls = std::make_shared<WatchedCalls>();
    std::uint64_t count = 0;
    Clock::time_point since = Clock::now();
    nanoseconds busyTime{0};  ///< At the last tick.

    /// How long the thread was busy since the last call.
    nanoseconds newBusyTime() {
        const nanoseconds before = std::exchange(busyTime, calls->busyTime());
        return std::max(nanoseconds(0), busyTime - before);
    }
};

/// Decides how many workers list folders at the same time: one a core, and more while they wait for the disk, which
/// hides its latency. With everything in memory more workers would only take processor time from the window.
class WorkerCount {
public:
    explicit WorkerCount(std::size_t maximum)
        : m_minimum(std::clamp<std::size_t>(std::thread::hardware_concurrency(), 1, maximum)),
          m_maximum(maximum),
          m_count(m_minimum) {}

    [[nodiscard]] std::size_t count() const { return m_count; }

    /// `busy` is how long all workers together did not wait since the last call.
    void update(nanoseconds busy, bool hasPending) {
        const Clock::time_point now = Clock::now();
        const auto passed = static_cast<double>((now - std::exchange(m_last, now)).count());
        const double waiting = 1 - static_cast<double>(busy.count()) / passed / static_cast<double>(m_count);
        if (waiting > waitsForDisk && hasPending) {
            m_count = std::min(m_count + 2, m_maximum);
        } else if (waiting < waitsForNothing && m_count > m_minimum) {
            --m_count;
        }
    }

private:
    /// Shares of their time that the workers wait. Some of it they wait for each other.
    static constexpr double waitsForDisk = 0.12;
    static constexpr double waitsForNothing = 0.04;

    std::size_t m_minimum;
    std::size_t m_maximum;
    std::size_t m_count;
    Clock::time_point m_last = Clock::now();
};

void endWorker(WalkState& state) {
    const std::lock_guard lock(state.mutex);
    --state.activeWorkers;
    state.ended.notify_all();
}

/// What a thread does for a worker.
std::function<void()> workOf(const std::shared_ptr<WalkState>& state, WalkWorker& worker,
                             const std::shared_ptr<WatchedCalls>& calls) {
    return [state, &worker, calls] {
        calls->beginThread();
        try {
            worker.run(*calls);
            endWorker(*state);
        } catch (const std::bad_alloc&) {
            state->giveUp();
            endWorker(*state);
        } catch (const ThreadAbandoned&) {
            state->late->notifyAnswered();
        }
    };
}

/// Starts or resumes a worker on a new thread, or on this thread when no new one can be started.
Watched startWorker(const std::shared_ptr<WalkState>& state, WalkWorker& worker) {
    Watched watched;
    const std::function<void()> work = workOf(state, worker, watched.calls);
    if (!Threads::start(work, Threads::Priority::background)) {
        work();
    }
    return watched;
}

/// Adds a worker if a thread can be started for it.
bool addWorker(const std::shared_ptr<WalkState>& state, WalkWorker& worker, std::vector<Watched>& watched) {
    Watched added;
    {
        const std::lock_guard lock(state->mutex);
        // The last worker may have ended meanwhile, and the walk with it.
        if (state->activeWorkers == 0) {
            return false;
        }
        ++state->activeWorkers;
    }
    if (!Threads::start(workOf(state, worker, added.calls), Threads::Priority::background)) {
        endWorker(*state);
        return false;
    }
    watched.push_back(std::move(added));
    return true;
}

}  // namespace

DirectoryWalk::DirectoryWalk(std::vector<WalkRoot> roots, Policy policy, std::stop_token stop,
                             std::vector<Mount> mounts)
    : m_state(std::make_shared<WalkState>(std::move(roots), std::move(policy), std::move(stop), std::move(mounts))) {}

DirectoryWalk::~DirectoryWalk() = default;

void DirectoryWalk::setTag(std::size_t root, void* tag) {
    m_state->setTag(root, tag);
}

void DirectoryWalk::run(const std::vector<WalkVisitor*>& visitors, const std::function<void()>& tick) {
    WalkState& state = *m_state;
    for (WalkVisitor* const visitor : visitors) {
        state.workers.push_back(std::make_unique<WalkWorker>(state, *visitor));
    }
    WorkerCount workers(visitors.size());
    state.permit(workers.count());
    state.activeWorkers = workers.count();
    std::vector<Watched> watched;
    for (std::size_t i = 0; i < workers.count(); ++i) {
        watched.push_back(startWorker(m_state, *state.workers[i]));
    }
    std::unique_lock lock(state.mutex);
    while (!state.ended.wait_for(lock, tickInterval, [&] { return state.activeWorkers == 0; })) {
        lock.unlock();
        nanoseconds busy{0};
        for (std::size_t i = 0; i < watched.size(); ++i) {
            Watched& thread = watched[i];
            busy += thread.newBusyTime();
            const std::uint64_t count = thread.calls->count();
            if (std::exchange(thread.count, count) != count) {
                thread.since = Clock::now();
            } else if (Clock::now() - thread.since >= diskTimeout && thread.calls->abandon(count)) {
                thread = startWorker(m_state, *state.workers[i]);
            }
        }
        workers.update(busy, state.hasPending());
        while (watched.size() < workers.count() && addWorker(m_state, *state.workers[watched.size()], watched)) {
        }
        state.permit(workers.count());
        if (tick) {
            tick();
        }
        lock.lock();
    }
}

bool DirectoryWalk::wasOpened(std::size_t index) const {
    return m_state->roots[index].wasOpened;
}

std::shared_ptr<LateAnswer> DirectoryWalk::lateAnswer() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->hasSkipped ? m_state->late : nullptr;
}

unsigned DirectoryWalk::maximumWorkers() {
    return std::clamp(2 * std::thread::hardware_concurrency(), 8U, 16U);
}
