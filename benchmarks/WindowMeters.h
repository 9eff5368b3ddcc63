#pragma once

#include "Measure.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

#include <algorithm>

/// Measures the longest time in which its thread does not return to the event loop.
class StallMeter {
public:
    StallMeter() {
        QObject::connect(&m_timer, &QTimer::timeout, [this] {
            const Clock::time_point now = Clock::now();
            m_longest = std::max(m_longest, inMilliseconds(now - m_last) - 1);
            m_last = now;
        });
        m_timer.setTimerType(Qt::PreciseTimer);
        m_timer.start(1);
    }

    /// In milliseconds.
    [[nodiscard]] double longest() const { return m_longest; }

private:
    QTimer m_timer;
    Clock::time_point m_last = Clock::now();
    double m_longest = 0;
};

/// Runs the event loop for so many milliseconds.
inline void wait(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Runs the event loop until `isOver`.
template <typename Condition>
void waitFor(const Condition& isOver) {
    while (!isOver()) {
        wait(10);
    }
}
