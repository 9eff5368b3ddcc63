#include "Foundation/Threads.h"

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <fstream>
#include <mutex>
#include <new>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace Threads {

namespace {

/// Low enough that a thread of the window gets nearly all of a core when it has work.
constexpr int backgroundNiceness = 10;

/// A thread that runs `work`; not joinable when none can be started.
std::thread tryStart(std::function<void()> work) noexcept {
    try {
        return std::thread(std::move(work));
    } catch (const std::system_error&) {
        return {};
    } catch (const std::bad_alloc&) {
        return {};
    }
}

/// Schedulers that save energy let a new thread wait for the processor that it was started on, longer than a short work
/// takes.
void keepOffThisProcessor(std::thread& thread) {
    cpu_set_t processors;
    if (sched_getaffinity(0, sizeof processors, &processors) == 0 && CPU_COUNT(&processors) > 1) {
        CPU_CLR(static_cast<std::size_t>(sched_getcpu()), &processors);
        (void)pthread_setaffinity_np(thread.native_handle(), sizeof processors, &processors);
    }
}

struct Running {
    std::mutex mutex;
    std::condition_variable ended;
    int count = 0;  ///< Threads started by `start`.
};

/// Never destroyed: threads may still use it while the program exits.
Running& running() {
    static auto* const here = new Running;
    return *here;
}

void changeRunning(int by) {
    const std::lock_guard lock(running().mutex);
    running().count += by;
    running().ended.notify_all();
}

}  // namespace

bool start(std::function<void()> work, Priority priority) noexcept {
    changeRunning(1);
    std::thread thread = tryStart([work = std::move(work), priority]() mutable {
        if (priority == Priority::background) {
            // Threads of this policy do not take the processor from another one when they wake up.
            const sched_param parameters{};
            (void)pthread_setschedparam(pthread_self(), SCHED_BATCH, &parameters);
            (void)setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), backgroundNiceness);
        }
        work();
        // Destroys what `work` holds before `waitForAll` can return.
        work = nullptr;
        changeRunning(-1);
    });
    const bool started = thread.joinable();
    if (started) {
        thread.detach();
    } else {
        changeRunning(-1);
    }
    return started;
}

bool waitForAll(std::chrono::milliseconds patience) {
    std::unique_lock lock(running().mutex);
    return running().ended.wait_for(lock, patience, [] { return running().count == 0; });
}

void runAll(std::size_t count, const std::function<void(std::size_t)>& work) {
    std::atomic<std::size_t> next = 0;
    const auto runSome = [&] {
        for (std::size_t index = next++; index < count; index = next++) {
            work(index);
        }
    };
    std::vector<std::thread> threads;
    threads.reserve(count);
    for (std::size_t i = 1; i < count; ++i) {
        std::thread thread = tryStart(runSome);
        if (!thread.joinable()) {
            break;
        }
        keepOffThisProcessor(thread);
        threads.push_back(std::move(thread));
    }
    runSome();
    for (std::thread& thread : threads) {
        thread.join();
    }
}

Number current() {
    return gettid();
}

std::chrono::nanoseconds busyTime(Number thread) {
    std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/schedstat");
    std::int64_t run = 0;
    std::int64_t waited = 0;
    return file >> run >> waited ? std::chrono::nanoseconds(run + waited) : std::chrono::nanoseconds(0);
}

}  // namespace Threads
