#pragma once

#include "base/Mutex.h"
#include "base/TaskQueue.h"

#include <QObject>
#include <QThreadPool>

namespace quillon {

/// Runs tasks on the thread that made the queue, one at a time, between the events of its Qt loop.
/// Tasks that still wait when the queue is destroyed are dropped.
class MainTaskQueue : public TaskQueue
{
public:
    void post(Task task) override;
    void postDelayed(std::chrono::milliseconds delay, Task task) override;
    /// On the queue's own thread the task runs at once.
    bool postAndWait(Task task) override;
    /// Drops the waiting tasks and every later one, so that no thread waits for a loop that has
    /// ended. It is called on the thread that made the queue.
    void close() EXCLUDES(mutex_);

private:
    QObject context_;
    Mutex mutex_;
    bool isClosed_ GUARDED_BY(mutex_) = false;
};

/// Runs tasks on threads of its own, and is a serial queue when it has one thread. Delays are timed
/// by the Qt loop of the thread that made the queue. The destructor drops the waiting tasks and
/// waits for the running ones.
class PoolTaskQueue : public TaskQueue
{
public:
    explicit PoolTaskQueue(int threads);
    ~PoolTaskQueue() override;

    void post(Task task) override;
    void postDelayed(std::chrono::milliseconds delay, Task task) override;
    /// Drops the waiting tasks and waits for the running ones. Returns false when they have not
    /// ended in time. Nothing is posted afterwards.
    bool finish(std::chrono::milliseconds patience);

private:
    QThreadPool pool_;
    MainTaskQueue timer_;
};

} // namespace quillon
