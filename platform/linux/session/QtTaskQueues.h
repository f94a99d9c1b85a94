#pragma once

#include "base/Mutex.h"
#include "base/TaskQueue.h"

#include <QObject>
#include <QThreadPool>

namespace quillon {

/// Tasks on the thread that made the queue, one at a time, between the events of its Qt loop.
/// Tasks that still wait when the queue goes are dropped.
class MainTaskQueue : public TaskQueue
{
public:
    void post(Task task) override;
    void postDelayed(std::chrono::milliseconds delay, Task task) override;
    /// On the queue's own thread the task runs at once.
    bool postAndWait(Task task) override;
    /// Drops the tasks that wait and every later one, so that nobody waits for a loop that has
    /// ended. On the thread that made the queue.
    void close() EXCLUDES(mutex_);

private:
    QObject context_;
    Mutex mutex_;
    bool isClosed_ GUARDED_BY(mutex_) = false;
};

/// Tasks on threads of its own; with one thread a serial queue. Delays are timed by the Qt loop of
/// the thread that made the queue. The destructor drops the tasks that wait and joins the others.
class PoolTaskQueue : public TaskQueue
{
public:
    explicit PoolTaskQueue(int threads);
    ~PoolTaskQueue() override;

    void post(Task task) override;
    void postDelayed(std::chrono::milliseconds delay, Task task) override;
    /// Drops the tasks that wait and waits for the others; false when the time is over before
    /// they end. Nothing is posted afterwards.
    bool finish(std::chrono::milliseconds patience);

private:
    QThreadPool pool_;
    MainTaskQueue timer_;
};

} // namespace quillon
