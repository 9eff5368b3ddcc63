#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>

#include <functional>

/// Runs the event loop until `condition` holds; false if it does not within twenty seconds.
inline bool waitUntil(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(20'000);
    while (!condition() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 50);
    }
    return condition();
}
