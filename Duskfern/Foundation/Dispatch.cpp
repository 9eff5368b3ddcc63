#include "Foundation/Dispatch.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QThreadPool>

namespace Dispatch {

namespace {

struct Background {
    Background() { pool.setMaxThreadCount(16); }
    QThreadPool pool;
    std::stop_source stop;
};

/// Never destroyed: its destructor would wait without end for a thread that is stuck in the kernel.
Background& shared() {
    static auto* const background = new Background;
    return *background;
}

}  // namespace

void background(std::function<void(std::stop_token)> work) {
    Background& here = shared();
    here.pool.start([work = std::move(work), token = here.stop.get_token()] { work(token); });
}

void main(std::function<void()> work) {
    if (QCoreApplication* application = QCoreApplication::instance()) {
        QMetaObject::invokeMethod(application, std::move(work), Qt::QueuedConnection);
    }
}

Finish shutDown(std::chrono::milliseconds patience) {
    Background& here = shared();
    here.stop.request_stop();
    return here.pool.waitForDone(static_cast<int>(patience.count())) ? Finish::clean : Finish::stuck;
}

}  // namespace Dispatch
