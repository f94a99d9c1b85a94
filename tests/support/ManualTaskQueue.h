#pragma once

#include "base/TaskQueue.h"

#include <deque>
#include <utility>

namespace quillon {

/// A queue that a test drives by hand, on one thread.
class ManualTaskQueue final : public TaskQueue
{
public:
    void post(Task task) override { tasks_.push_back(std::move(task)); }
    void postDelayed(std::chrono::milliseconds, Task task) override { post(std::move(task)); }

    bool isEmpty() const { return tasks_.empty(); }
    std::size_t size() const { return tasks_.size(); }
    /// Runs the oldest task, which must be there.
    void runNext()
    {
        const Task task = std::move(tasks_.front());
        tasks_.pop_front();
        task();
    }
    /// Hands the oldest task, which must be there, to another queue.
    void moveNextTo(ManualTaskQueue &other)
    {
        other.post(std::move(tasks_.front()));
        tasks_.pop_front();
    }
    void runAll()
    {
        while (!isEmpty())
            runNext();
    }

private:
    std::deque<Task> tasks_;
};

} // namespace quillon
