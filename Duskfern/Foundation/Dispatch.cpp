#include "Foundation/Dispatch.h"

#include "Foundation/Threads.h"

#include <QtCore/QCoreApplication>

#include <deque>
#include <mutex>
#include <utility>

namespace Dispatch {

namespace {

struct State {
    std::mutex mutex;
    std::deque<std::function<void()>> forMain;  ///< Work not yet run by the main thread.
    std::stop_source stop;
};

/// Never destroyed: background threads may still use it while the program exits.
State& state() {
    static auto* const here = new State;
    return *here;
}

void runOnMain() {
    std::deque<std::function<void()>> works;
    {
        const std::lock_guard lock(state().mutex);
        works.swap(state().forMain);
    }
    for (const std::function<void()>& work : works) {
        work();
    }
}

}  // namespace

void background(std::function<void(std::stop_token)> work) {
    const auto run = [work = std::move(work)] { work(state().stop.get_token()); };
    if (!Threads::start(run)) {
        main(run);
    }
}

void main(std::function<void()> work) {
    QCoreApplication* const application = QCoreApplication::instance();
    if (application == nullptr) {
        return;
    }
    const std::lock_guard lock(state().mutex);
    state().forMain.push_back(std::move(work));
    if (state().forMain.size() == 1) {
        QMetaObject::invokeMethod(application, runOnMain, Qt::QueuedConnection);
    }
}

Finish shutDown(std::chrono::milliseconds patience) {
    state().stop.request_stop();
    return Threads::waitForAll(patience) ? Finish::clean : Finish::stuck;
}

}  // namespace Dispatch
