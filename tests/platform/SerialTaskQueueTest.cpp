#include "base/SerialTaskQueue.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <memory>
#include <thread>
#include <vector>

namespace quillon {

namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

TEST(SerialTaskQueue, runsTasksOneAtATimeInTheOrderInWhichTheyAreDue)
{
    SerialTaskQueue queue("org.example.serial");
    std::vector<int> order;
    std::promise<void> last;
    queue.postAndWait([&] {
        // These tasks are posted while the queue is busy with this one, so that nothing runs in
        // between.
        queue.postDelayed(40ms, [&] { order.push_back(4); });
        queue.postDelayed(40ms, [&] { order.push_back(5); });
        queue.postDelayed(20ms, [&] { order.push_back(3); });
        queue.postDelayed(60ms, [&] { last.set_value(); });
        queue.post([&] { order.push_back(1); });
        queue.post([&] { order.push_back(2); });
        const auto until = std::chrono::steady_clock::now() + 80ms; // all are due by then
        while (std::chrono::steady_clock::now() < until)
            std::this_thread::yield();
    });
    last.get_future().wait();
    EXPECT_THAT(order, ElementsAre(1, 2, 3, 4, 5));
}

TEST(SerialTaskQueue, runsADelayedTaskNoEarlier)
{
    SerialTaskQueue queue("org.example.serial");
    const auto begin = std::chrono::steady_clock::now();
    std::promise<std::chrono::steady_clock::duration> after;
    queue.postDelayed(30ms, [&] { after.set_value(std::chrono::steady_clock::now() - begin); });
    EXPECT_GE(after.get_future().get(), 30ms);
}

TEST(SerialTaskQueue, dropsWhatWaitsWhenItIsFinished)
{
    SerialTaskQueue queue("org.example.serial");
    std::promise<void> begun;
    std::atomic<bool> isHeld = true;
    const auto token = std::make_shared<int>();
    queue.post([&] {
        begun.set_value();
        isHeld.wait(true);
    });
    begun.get_future().wait();
    queue.postDelayed(1h, [token] { ADD_FAILURE() << "a dropped task ran"; });
    queue.post([token] { ADD_FAILURE() << "a dropped task ran"; });
    std::jthread waiting(
        [&] { EXPECT_FALSE(queue.postAndWait([] { ADD_FAILURE() << "a dropped task ran"; })); });

    EXPECT_FALSE(queue.finish(1ms)) << "a task runs still";
    EXPECT_EQ(token.use_count(), 1);
    EXPECT_FALSE(queue.postAndWait([] { ADD_FAILURE() << "posted too late"; }));
    isHeld = false;
    isHeld.notify_all();
    EXPECT_TRUE(queue.finish(1min));
}

} // namespace

} // namespace quillon
