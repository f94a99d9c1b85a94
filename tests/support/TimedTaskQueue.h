#pragma once

#include "base/TaskQueue.h"

#include <map>
#include <utility>

namespace quillon {

/// A serial queue whose time a test drives by hand, on one thread.
class TimedTaskQueue final : public TaskQueue
{
public:
    void post(Task task) override { postDelayed({}, std::move(task)); }
    void postDelayed(std::chrono::milliseconds delay, Task task) override
    {
        tasks_.emplace(now_ + delay, std::move(task));
    }

    /// Lets time pass and runs what becomes due, each task at its time.
    void advance(std::chrono::milliseconds time)
    {
        const std::chrono::milliseconds end = now_ + time;
        while (!tasks_.empty() && tasks_.begin()->first <= end) {
            now_ = tasks_.begin()->first;
            const Task task = std::move(tasks_.begin()->second);
            tasks_.erase(tasks_.begin());
            task();
        }
        now_ = end;
    }
    /// Returns the time since the beginning.
    std::chrono::milliseconds now() const { return now_; }

private:
    std::chrono::milliseconds now_{};
    std::multimap<std::chrono::milliseconds, Task> tasks_;
};

} // namespace quillon
