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
    // From here on the promise is the task's alone: where that is dropped, it is broken.
    end.reset();
    ended.wait();
    return hasRun;
}

} // namespace quillon
