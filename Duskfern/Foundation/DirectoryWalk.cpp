#include "Foundation/DirectoryWalk.h"

#include "Foundation/Threads.h"
#include "Foundation/WalkState.h"
#include "Foundation/WalkWorker.h"

#include <algorithm>
#include <thread>
#include <utility>

namespace {

using Clock = std::chrono::steady_clock;

/// How often the walking threads are looked after, and progress is reported.
constexpr std::chrono::milliseconds tickInterval{20};

/// What the thread that watches knows of one worker's thread.
struct Watched {
    std::shared_ptr<WatchedCalls> calls;
    std::uint64_t count = 0;
    Clock::time_point since;
};

void endWorker(WalkState& state) {
    const std::lock_guard lock(state.mutex);
    --state.workers;
    state.ended.notify_all();
}

/// Lets a worker run, or go on, on a thread of its own; on this one where there is none to be had.
Watched startWorker(const std::shared_ptr<WalkState>& state, WalkWorker& worker) {
    Watched watched{std::make_shared<WatchedCalls>(), 0, Clock::now()};
    const auto run = [state, &worker, calls = watched.calls] {
        try {
            worker.run(*calls);
            endWorker(*state);
        } catch (const std::bad_alloc&) {
            state->giveUp();
            endWorker(*state);
        } catch (const LeftBehind&) {
            state->late->arrived();
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
        state.crew.push_back(std::make_unique<WalkWorker>(state, *visitor));
    }
    state.workers = state.crew.size();
    std::vector<Watched> watched;
    for (const auto& worker : state.crew) {
        watched.push_back(startWorker(m_state, *worker));
    }
    std::unique_lock lock(state.mutex);
    while (!state.ended.wait_for(lock, tickInterval, [&] { return state.workers == 0; })) {
        lock.unlock();
        for (std::size_t i = 0; i < watched.size(); ++i) {
            Watched& thread = watched[i];
            const std::uint64_t count = thread.calls->count();
            if (std::exchange(thread.count, count) != count) {
                thread.since = Clock::now();
            } else if (Clock::now() - thread.since >= diskPatience && thread.calls->leaveBehind(count)) {
                thread = startWorker(m_state, *state.crew[i]);
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
    return m_state->hasPassedOver ? m_state->late : nullptr;
}

unsigned DirectoryWalk::recommendedThreads() {
    return std::clamp(2 * std::thread::hardware_concurrency(), 4U, 8U);
}
