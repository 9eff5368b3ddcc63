#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <stop_token>
#include <utility>
#include <vector>

/// A disk that has been silent for so long is passed over. Servers that are gone and file systems of programs that
/// hang may never answer, and nothing can end a thread that waits for them.
inline constexpr std::chrono::milliseconds diskPatience{2000};

/// Says that the calling thread is not waiting for a disk, so that work of many small steps is not taken for a silent
/// one. Costs next to nothing; without effect on threads that nobody watches.
void signOfLife();

/// Tells when something that was passed over answers after all. Any thread may call it.
class LateAnswer {
public:
    /// Calls `handler` once, on whatever thread, when the first of them answers; at once if one already has.
    void whenAnswered(std::function<void()> handler);

    /// One of those that were passed over has answered.
    void arrived();

private:
    std::mutex m_mutex;
    bool m_hasArrived = false;
    std::function<void()> m_handler;
};

/// What a thread that may hang hands to one that does not wait for it without end.
template <class T>
class Handover {
public:
    /// Lets `change` work on the value, unless it was taken already.
    template <class Change>
    void edit(Change change) {
        const std::lock_guard lock(m_mutex);
        if (!m_isTaken) {
            change(m_value);
        }
    }

    /// What has been put in so far. Later edits have no effect.
    [[nodiscard]] T take() {
        const std::lock_guard lock(m_mutex);
        m_isTaken = true;
        return std::move(m_value);
    }

private:
    std::mutex m_mutex;
    bool m_isTaken = false;
    T m_value{};
};

/// Questions to disks, each asked on a thread of its own as soon as it is known.
class DiskQuestions {
public:
    DiskQuestions();

    /// `question` may outlive this object and everything that is not its own: it must share what it writes to, by a
    /// `Handover` for instance. Where no thread is to be had it is answered before this returns.
    void ask(std::function<void()> question);

    /// Waits until each question has ended or has been silent for `diskPatience`, or until `stop`. Returns null when
    /// all have ended, otherwise what tells of the first late answer.
    [[nodiscard]] std::shared_ptr<LateAnswer> wait(const std::stop_token& stop = {});

private:
    struct Shared;
    struct Question;

    std::shared_ptr<Shared> m_shared;
    std::vector<std::shared_ptr<Question>> m_questions;
};
