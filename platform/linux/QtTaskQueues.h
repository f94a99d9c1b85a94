#pragma once

#include "platform/TaskQueue.h"

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

private:
    QObject context_;
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
