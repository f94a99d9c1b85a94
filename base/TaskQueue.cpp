#include "base/TaskQueue.h"

#include <atomic>
#include <future>
#include <memory>
#include <utility>

namespace quillon {

bool TaskQueue::postAndWait(Task task)
{
    std::atomic<bool> hasRun = false;
    auto end = std::make_shared<std::promise<void>>();
    const std::future<void> ended = end->get_future();
    post([&hasRun, end, task = std::move(task)] {
        task();
        hasRun = true;
        end->set_value();
    });
    // From here on the task alone owns the promise, which is broken when the task is dropped.
    end.reset();
    ended.wait();
    return hasRun;
}

} // namespace quillon
