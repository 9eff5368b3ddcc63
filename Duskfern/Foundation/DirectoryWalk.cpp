#include "Foundation/DirectoryWalk.h"

#include "Foundation/DiskTimeout.h"
#include "Foundation/Threads.h"
#include "Foundation/WalkState.h"
#include "Foundation/WalkWorker.h"

#include <algorithm>
#include <mutex>
#include <thread>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;

/// How often the worker threads are checked for timeouts and progress is reported.
constexpr std::chrono::milliseconds tickInterval{20};

/// What the watching thread records about the thread of one worker.
struct Watched {
    std::shared_ptr<WatchedCalls> calls;
    std::uint64_t count = 0;
    Clock::time_point since;
};

void endWorker(WalkState& state) {
    const std::lock_guard lock(state.mutex);
    --state.activeWorkers;
    state.ended.notify_all();
}

/// Starts or resumes a worker on a new thread, or on this thread when no new one can be started.
Watched startWorker(const std::shared_ptr<WalkState>& state, WalkWorker& worker) {
    Watched watched{std::make_shared<WatchedCalls>(), 0, Clock::now()};
    const auto run = [state, &worker, calls = watched.calls] {
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
    if (!Threads::start(run, Threads::Priority::background)) {
        run();
    }
    return watched;
}

}  // namespace

DirectoryWalk::DirectoryWalk(std::vector<WalkRoot> roots, Policy policy, std::stop_token stop,
                             std::vector<Mount> mounts)
    : m_state(std::make_shared<WalkState>(std::move(roots), std::move(policy), std::move(stop), std::move(mounts))) {}

DirectoryWalk::~DirectoryWalk() = default;

void DirectoryWalk::run(const std::vector<WalkVisitor*>& visitors, const std::function<void()>& tick) {
    WalkState& state = *m_state;
    for (WalkVisitor* const visitor : visitors) {
        state.workers.push_back(std::make_unique<WalkWorker>(state, *visitor));
    }
    state.activeWorkers = state.workers.size();
    std::vector<Watched> watched;
    for (const auto& worker : state.workers) {
        watched.push_back(startWorker(m_state, *worker));
    }
    std::unique_lock lock(state.mutex);
    while (!state.ended.wait_for(lock, tickInterval, [&] { return state.activeWorkers == 0; })) {
        lock.unlock();
        for (std::size_t i = 0; i < watched.size(); ++i) {
            Watched& thread = watched[i];
            const std::uint64_t count = thread.calls->count();
            if (std::exchange(thread.count, count) != count) {
                thread.since = Clock::now();
            } else if (Clock::now() - thread.since >= diskTimeout && thread.calls->abandon(count)) {
                thread = startWorker(m_state, *state.workers[i]);
            }
        }
        if (tick) {
            tick();
        }
        lock.lock();
    }
}

WalkFolder& DirectoryWalk::root(std::size_t index) {
    return m_state->roots[index].folder;
}

bool DirectoryWalk::wasOpened(std::size_t index) const {
    return m_state->roots[index].wasOpened;
}

std::shared_ptr<LateAnswer> DirectoryWalk::lateAnswer() const {
    const std::lock_guard lock(m_state->mutex);
    return m_state->hasSkipped ? m_state->late : nullptr;
}

unsigned DirectoryWalk::recommendedThreads() {
    return std::clamp(2 * std::thread::hardware_concurrency(), 4U, 8U);
}
