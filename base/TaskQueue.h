#pragma once

#include <chrono>
#include <functional>

namespace quillon {

/// Runs tasks somewhere else or later. Safe from every thread.
class TaskQueue
{
public:
    using Task = std::function<void()>;

    TaskQueue() = default;
    virtual ~TaskQueue() = default;
    TaskQueue(const TaskQueue &) = delete;
    TaskQueue &operator=(const TaskQueue &) = delete;

    /// A serial queue runs its tasks one at a time, first in, first out. A closed queue destroys
    /// the task instead of running it.
    virtual void post(Task task) = 0;
    /// Runs the task no earlier than after the delay; equal deadlines keep their order.
    virtual void postDelayed(std::chrono::milliseconds delay, Task task) = 0;
    /// Returns when the task has run, or false when the queue drops it because it is closed. Tasks
    /// of the same queue do not call this, unless the queue says that they may.
    virtual bool postAndWait(Task task);
};

} // namespace quillon
