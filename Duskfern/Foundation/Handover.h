#pragma once

#include <mutex>
#include <utility>

/// A result that one thread writes and another one takes without waiting for the first to end: the writer may hang.
template <class T>
class Handover {
public:
    /// Calls `change` with the value, unless it was taken already.
    template <class Change>
    void edit(Change change) {
        const std::lock_guard lock(m_mutex);
        if (!m_isTaken) {
            change(m_value);
        }
    }

    /// The value as written so far. Later edits have no effect.
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
