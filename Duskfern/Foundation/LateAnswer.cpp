#include "Foundation/LateAnswer.h"

#include <utility>

void LateAnswer::whenAnswered(std::function<void()> handler) {
    {
        const std::lock_guard lock(m_mutex);
        if (!m_hasAnswered) {
            m_handler = std::move(handler);
            return;
        }
    }
    handler();
}

void LateAnswer::notifyAnswered() {
    std::function<void()> handler;
    {
        const std::lock_guard lock(m_mutex);
        m_hasAnswered = true;
        handler = std::exchange(m_handler, nullptr);
    }
    if (handler) {
        handler();
    }
}
