#include "Foundation/DiskRequests.h"

#include "Foundation/DiskTimeout.h"
#include "Foundation/Threads.h"

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <utility>

namespace {

/// How often the requests are checked for timeouts.
constexpr std::chrono::milliseconds checkInterval{100};

/// The heartbeat counter of this thread; null on threads that nobody watches.
thread_local std::atomic<std::uint64_t>* heartbeatsOfThisThread = nullptr;

}  // namespace

void heartbeat() {
    if (heartbeatsOfThisThread != nullptr) {
        heartbeatsOfThisThread->fetch_add(1, std::memory_order_relaxed);
    }
}

struct DiskRequests::Request {
    std::atomic<std::uint64_t> heartbeats = 0;
    bool hasEnded = false;  ///< Guarded by the mutex of `Shared`, as the next.
    bool hasTimedOut = false;
};

struct DiskRequests::Shared {
    std::mutex mutex;
    std::condition_variable ended;
    std::shared_ptr<LateAnswer> late = std::make_shared<LateAnswer>();
};

DiskRequests::DiskRequests() : m_shared(std::make_shared<Shared>()) {}

void DiskRequests::start(std::function<void()> request) {
    const auto entry = m_requests.emplace_back(std::make_shared<Request>());
    const auto shared = m_shared;
    const auto answer = [shared, entry, request = std::move(request)] {
        auto* const outer = std::exchange(heartbeatsOfThisThread, &entry->heartbeats);
        request();
        heartbeatsOfThisThread = outer;
        bool isLate = false;
        {
            const std::lock_guard lock(shared->mutex);
            entry->hasEnded = true;
            isLate = entry->hasTimedOut;
            shared->ended.notify_all();
        }
        if (isLate) {
            shared->late->notifyAnswered();
        }
    };
    if (!Threads::start(answer)) {
        answer();
    }
}

std::shared_ptr<LateAnswer> DiskRequests::wait(const std::stop_token& stop) {
    using Clock = std::chrono::steady_clock;
    struct Seen {
        std::uint64_t heartbeats = 0;
        Clock::time_point at = Clock::now();
    };
    std::vector<Seen> seen(m_requests.size());
    std::unique_lock lock(m_shared->mutex);
    while (!stop.stop_requested()) {
        bool isOpen = false;
        const Clock::time_point now = Clock::now();
        for (std::size_t i = 0; i < m_requests.size(); ++i) {
            Request& request = *m_requests[i];
            if (request.hasEnded || request.hasTimedOut) {
                continue;
            }
            const std::uint64_t heartbeats = request.heartbeats.load(std::memory_order_relaxed);
            if (std::exchange(seen[i].heartbeats, heartbeats) != heartbeats) {
                seen[i].at = now;
            }
            request.hasTimedOut = now - seen[i].at >= diskTimeout;
            isOpen = isOpen || !request.hasTimedOut;
        }
        if (!isOpen) {
            break;
        }
        m_shared->ended.wait_for(lock, checkInterval);
    }
    const bool hasAnyTimedOut =
        std::any_of(m_requests.begin(), m_requests.end(), [](const auto& request) { return request->hasTimedOut; });
    return hasAnyTimedOut ? m_shared->late : nullptr;
}
