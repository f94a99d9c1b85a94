#pragma once

#include "base/TaskQueue.h"

#include <thread>

namespace quillon {

/// Runs each task on the thread that posts it, for programs without an event loop.
class InlineTaskQueue final : public TaskQueue
{
public:
    void post(Task task) override { task(); }
    void postDelayed(std::chrono::milliseconds delay, Task task) override
    {
        std::this_thread::sleep_for(delay);
        task();
    }
    /// Allowed from a task of the queue.
    bool postAndWait(Task task) override
    {
        task();
        return true;
    }
};

} // namespace quillon
