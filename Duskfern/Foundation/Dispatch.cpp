#include "Foundation/Dispatch.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QThreadPool>

#include <deque>
#include <mutex>

namespace Dispatch {

namespace {

/// Work on its way from one thread to another. Qt wakes the other thread up; what is handed over passes through here,
/// where tools that look for data races can see it.
template <class Work>
class Handover {
public:
    /// Whether it was empty before.
    bool put(Work work) {
        const std::lock_guard lock(m_mutex);
        m_works.push_back(std::move(work));
        return m_works.size() == 1;
    }

    [[nodiscard]] Work takeFirst() {
        const std::lock_guard lock(m_mutex);
        Work work = std::move(m_works.front());
        m_works.pop_front();
        return work;
    }

    [[nodiscard]] std::deque<Work> takeAll() {
        const std::lock_guard lock(m_mutex);
        return std::exchange(m_works, {});
    }

private:
    std::mutex m_mutex;
    std::deque<Work> m_works;
};

struct Shared {
    Shared() { pool.setMaxThreadCount(16); }
    Handover<std::function<void()>> toMain;
    Handover<std::function<void(std::stop_token)>> toBackground;
    QThreadPool pool;
    std::stop_source stop;
};

/// Never destroyed: its destructor would wait without end for a thread that is stuck in the kernel.
Shared& shared() {
    static auto* const here = new Shared;
    return *here;
}

void runOnMain() {
    for (const std::function<void()>& work : shared().toMain.takeAll()) {
        work();
    }
}

}  // namespace

void background(std::function<void(std::stop_token)> work) {
    Shared& here = shared();
    here.toBackground.put(std::move(work));
    here.pool.start([] { shared().toBackground.takeFirst()(shared().stop.get_token()); });
}

void main(std::function<void()> work) {
    QCoreApplication* const application = QCoreApplication::instance();
    if (application != nullptr && shared().toMain.put(std::move(work))) {
        QMetaObject::invokeMethod(application, runOnMain, Qt::QueuedConnection);
    }
}

Finish shutDown(std::chrono::milliseconds patience) {
    shared().stop.request_stop();
    return shared().pool.waitForDone(static_cast<int>(patience.count())) ? Finish::clean : Finish::stuck;
}

}  // namespace Dispatch
