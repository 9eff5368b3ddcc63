#pragma once

#include <QtCore/QCoreApplication>
#include <QtCore/QDeadlineTimer>
#include <QtCore/QThread>

/// Runs the event loop, as the program does, until `condition` holds; false if it does not within twenty seconds.
template <class Condition>
bool waitUntil(const Condition& condition) {
    for (const QDeadlineTimer deadline(20'000); !deadline.hasExpired();) {
        if (condition()) {
            return true;
        }
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        QThread::usleep(500);
    }
    return condition();
}
