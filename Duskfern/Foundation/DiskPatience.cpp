#include "Foundation/DiskPatience.h"

#include "Foundation/Threads.h"

#include <algorithm>
#include <condition_variable>

namespace {

/// How often silent threads are looked for.
constexpr std::chrono::milliseconds checkInterval{100};

/// The signs of life of this thread, if somebody watches it.
thread_local std::atomic<std::uint64_t>* signsOfThisThread = nullptr;

}  // namespace

void signOfLife() {
    if (signsOfThisThread != nullptr) {
        signsOfThisThread->fetch_add(1, std::memory_order_relaxed);
    }
}

void LateAnswer::whenAnswered(std::function<void()> handler) {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_hasArrived) {
            m_handler = std::move(handler);
            return;
        }
    }
    handler();
}

void LateAnswer::arrived() {
    std::function<void()> handler;
    {
        const std::lock_guard lock(m_mutex);
        m_hasArrived = true;
        handler = std::exchange(m_handler, nullptr);
    }
    if (handler) {
        handler();
    }
}

struct DiskQuestions::Question {
    std::atomic<std::uint64_t> signs = 0;
    bool hasEnded = false;  ///< Guarded by the mutex of `Shared`, as the next.
    bool isPassedOver = false;
};

struct DiskQuestions::Shared {
    std::mutex mutex;
    std::condition_variable ended;
    std::shared_ptr<LateAnswer> late = std::make_shared<LateAnswer>();
};

DiskQuestions::DiskQuestions() : m_shared(std::make_shared<Shared>()) {}

void DiskQuestions::ask(std::function<void()> question) {
    const auto entry = m_questions.emplace_back(std::make_shared<Question>());
    const auto shared = m_shared;
    const auto answer = [shared, entry, question = std::move(question)] {
        auto* const outer = std::exchange(signsOfThisThread, &entry->signs);
        question();
        signsOfThisThread = outer;
        bool isLate = false;
        {
            const std::lock_guard lock(shared->mutex);
            entry->hasEnded = true;
            isLate = entry->isPassedOver;
            shared->ended.notify_all();
        }
        if (isLate) {
            shared->late->arrived();
        }
    };
    if (!Threads::start(answer)) {
        answer();
    }
}

std::shared_ptr<LateAnswer> DiskQuestions::wait(const std::stop_token& stop) {
    using Clock = std::chrono::steady_clock;
    struct Seen {
        std::uint64_t signs = 0;
        Clock::time_point at = Clock::now();
    };
    std::vector<Seen> seen(m_questions.size());
    std::unique_lock lock(m_shared->mutex);
    while (!stop.stop_requested()) {
        bool isOpen = false;
        const Clock::time_point now = Clock::now();
        for (std::size_t i = 0; i < m_questions.size(); ++i) {
            Question& question = *m_questions[i];
            if (question.hasEnded || question.isPassedOver) {
                continue;
            }
            const std::uint64_t signs = question.signs.load(std::memory_order_relaxed);
            if (std::exchange(seen[i].signs, signs) != signs) {
                seen[i].at = now;
            }
            question.isPassedOver = now - seen[i].at >= diskPatience;
            isOpen = isOpen || !question.isPassedOver;
        }
        if (!isOpen) {
            break;
        }
        m_shared->ended.wait_for(lock, checkInterval);
    }
    const bool hasSilent = std::any_of(m_questions.begin(), m_questions.end(),
                                       [](const auto& question) { return question->isPassedOver; });
    return hasSilent ? m_shared->late : nullptr;
}
