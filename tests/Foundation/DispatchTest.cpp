#include "Foundation/Dispatch.h"

#include "Foundation/Threads.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <semaphore>
#include <thread>

namespace {

TEST(Dispatch, EachWorkInTheBackgroundHasAThreadOfItsOwn) {
    std::binary_semaphore second(0);
    std::atomic<bool> wasReleased = false;
    Dispatch::background(
        [&](const std::stop_token&) { wasReleased = second.try_acquire_for(std::chrono::seconds(9)); });
    Dispatch::background([&](const std::stop_token&) { second.release(); });
    EXPECT_TRUE(Threads::waitForAll(std::chrono::seconds(20)));
    EXPECT_TRUE(wasReleased) << "the second work waited for the first";
}

/// In a process of its own, because nothing is dispatched after it.
TEST(Dispatch, EndsWhatListensAndTellsOfWhatHangs) {
    const auto shutDown = [] {
        Dispatch::background([](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                std::this_thread::yield();
            }
        });
        const bool isClean = Dispatch::shutDown(std::chrono::seconds(9)) == Dispatch::Finish::clean;
        std::binary_semaphore never(0);
        Dispatch::background([&](const std::stop_token&) { never.acquire(); });
        const bool isStuck = Dispatch::shutDown(std::chrono::milliseconds(1)) == Dispatch::Finish::stuck;
        std::_Exit(isClean && isStuck ? 0 : 1);
    };
    EXPECT_EXIT(shutDown(), testing::ExitedWithCode(0), "");
}

}  // namespace
