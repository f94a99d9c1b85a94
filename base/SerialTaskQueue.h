#pragma once

#include "base/Mutex.h"
#include "base/TaskQueue.h"

#include <chrono>
#include <cstddef>
#include <map>
#include <string>
#include <thread>

namespace quillon {

/// Runs tasks on a thread of its own, one at a time, in the order in which they are due. It needs
/// no event loop.
class SerialTaskQueue final : public TaskQueue
{
public:
    /// The part of the label behind its last dot names the thread.
    explicit SerialTaskQueue(std::string label);
    /// Closes the queue and waits for the running task.
    ~SerialTaskQueue() override;

    void post(Task task) override;
    void postDelayed(std::chrono::milliseconds delay, Task task) override EXCLUDES(mutex_);
    /// Drops the waiting tasks and every later one, and waits for the running task. Returns false
    /// when that task has not ended in time.
    bool finish(std::chrono::milliseconds patience) EXCLUDES(mutex_);

    const std::string &label() const { return label_; }

private:
    using Clock = std::chrono::steady_clock;

    void startThread() REQUIRES(mutex_);
    void run() EXCLUDES(mutex_);
    /// Waits for the next task that is due. Returns an empty task when the queue is closed.
    Task take() EXCLUDES(mutex_);

    const std::string label_;
    Mutex mutex_;
    Condition changed_;
    /// Tasks that are due at the same time keep the order in which they were posted.
    std::multimap<Clock::time_point, Task> tasks_ GUARDED_BY(mutex_);
    bool isClosed_ GUARDED_BY(mutex_) = false;
    /// True while no task runs and none will: the thread has ended, or was never needed.
    bool hasEnded_ GUARDED_BY(mutex_) = true;
    /// The first task starts the thread.
    std::thread thread_;
};

} // namespace quillon
