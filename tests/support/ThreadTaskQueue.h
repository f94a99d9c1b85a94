#pragma once

#include "base/Mutex.h"
#include "base/TaskQueue.h"

#include <deque>
#include <thread>
#include <utility>

namespace quillon {

/// A serial queue with a thread of its own. The destructor runs the waiting tasks and joins the
/// thread.
class ThreadTaskQueue final : public TaskQueue
{
public:
    ThreadTaskQueue() : thread_([this] { run(); }) {}
    ~ThreadTaskQueue() override
    {
        post({});
        thread_.join();
    }

    void post(Task task) override EXCLUDES(mutex_)
    {
        const MutexLock lock(mutex_);
        tasks_.push_back(std::move(task));
        isThere_.notifyOne();
    }
    void postDelayed(std::chrono::milliseconds, Task task) override { post(std::move(task)); }

private:
    void run()
    {
        while (const Task task = next())
            task();
    }
    Task next() EXCLUDES(mutex_)
    {
        const MutexLock lock(mutex_);
        while (tasks_.empty())
            isThere_.wait(mutex_);
        Task task = std::move(tasks_.front());
        tasks_.pop_front();
        return task;
    }

    Mutex mutex_;
    Condition isThere_;
    std::deque<Task> tasks_ GUARDED_BY(mutex_);
    std::thread thread_;
};

} // namespace quillon
