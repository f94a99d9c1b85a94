#include "platform/linux/session/QtTaskQueues.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace quillon {

namespace {

using namespace std::chrono_literals;

TEST(MainTaskQueue, runsATaskThatIsWaitedForOnItsOwnThread)
{
    MainTaskQueue queue;
    std::thread::id where;
    EXPECT_TRUE(queue.postAndWait([&] { where = std::this_thread::get_id(); }));
    EXPECT_EQ(where, std::this_thread::get_id());

    where = {};
    std::atomic<bool> isOver = false;
    std::jthread worker([&] {
        EXPECT_TRUE(queue.postAndWait([&] { where = std::this_thread::get_id(); }));
        isOver = true;
    });
    while (!isOver)
        QCoreApplication::processEvents();
    EXPECT_EQ(where, std::this_thread::get_id());
}

TEST(MainTaskQueue, releasesWhoeverWaitsWhenItIsClosed)
{
    // The queue is closed before, while and after the task arrives, and its loop never runs.
    for (int yields = 0; yields < 2000; yields += 100) {
        MainTaskQueue queue;
        std::atomic<bool> hasBegun = false;
        std::jthread worker([&] {
            hasBegun = true;
            EXPECT_FALSE(queue.postAndWait([] { ADD_FAILURE() << "a dropped task ran"; }));
        });
        while (yields > 0 && !hasBegun)
            std::this_thread::yield();
        for (int i = 0; i < yields; ++i)
            std::this_thread::yield();
        queue.close();
    }
}

TEST(PoolTaskQueue, saysWhetherAWaitedForTaskRan)
{
    PoolTaskQueue queue(1);
    EXPECT_TRUE(queue.postAndWait([] {}));
    std::atomic<bool> hasBegun = false;
    std::atomic<bool> isHeld = true;
    queue.post([&] {
        hasBegun = true;
        hasBegun.notify_all();
        isHeld.wait(true);
    });
    hasBegun.wait(false);
    std::jthread waiting([&] { EXPECT_FALSE(queue.postAndWait([] {})); });
    std::jthread ending([&] {
        while (!queue.finish(1ms)) {
        }
    });
    waiting.join();
    isHeld = false;
    isHeld.notify_all();
}

} // namespace

} // namespace quillon
