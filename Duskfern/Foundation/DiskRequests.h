#pragma once

#include "Foundation/LateAnswer.h"

#include <functional>
#include <memory>
#include <stop_token>
#include <vector>

/// Records that the calling thread is not waiting for a disk, so that long work made of many short calls does not time
/// out. One atomic addition; without effect on threads that nobody watches.
void heartbeat();

/// Calls that may wait for a disk, each run on a thread of its own.
class DiskRequests {
public:
    DiskRequests();

    /// Runs `request` on a new thread; on this one, before returning, if no thread can be started. `request` may
    /// outlive this object and its caller, so it must own or share what it writes to, for instance in a `Handover`.
    void start(std::function<void()> request);

    /// Waits until each request has ended or has shown no `heartbeat()` for `diskTimeout`, or until `stop`. Returns
    /// null when all have ended, otherwise an object that tells of the first late answer.
    [[nodiscard]] std::shared_ptr<LateAnswer> wait(const std::stop_token& stop = {});

private:
    struct Shared;
    struct Request;

    std::shared_ptr<Shared> m_shared;
    std::vector<std::shared_ptr<Request>> m_requests;
};
