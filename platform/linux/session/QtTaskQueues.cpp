#include "platform/linux/session/QtTaskQueues.h"

#include <QCoreApplication>
#include <QMetaObject>
#include <QThread>
#include <QTimer>

#include <utility>

namespace quillon {

void MainTaskQueue::post(Task task)
{
    const MutexLock lock(mutex_);
    if (!isClosed_)
        QMetaObject::invokeMethod(&context_, std::move(task), Qt::QueuedConnection);
}

void MainTaskQueue::postDelayed(std::chrono::milliseconds delay, Task task)
{
    // A timer belongs to the thread that starts it, so the queue's own thread starts it.
    post([this, delay, task = std::move(task)]() mutable {
        QTimer::singleShot(delay, Qt::PreciseTimer, &context_, std::move(task));
    });
}

bool MainTaskQueue::postAndWait(Task task)
{
    if (QThread::currentThread() != context_.thread())
        return TaskQueue::postAndWait(std::move(task));
    task();
    return true;
}

void MainTaskQueue::close()
{
    {
        const MutexLock lock(mutex_);
        isClosed_ = true;
    }
    QCoreApplication::removePostedEvents(&context_);
}

PoolTaskQueue::PoolTaskQueue(int threads)
{
    pool_.setMaxThreadCount(threads);
    // A thread is kept once it has started, since the system may have none to give later.
    pool_.setExpiryTimeout(-1);
}

PoolTaskQueue::~PoolTaskQueue()
{
    pool_.clear();
}

bool PoolTaskQueue::finish(std::chrono::milliseconds patience)
{
    pool_.clear();
    return pool_.waitForDone(static_cast<int>(patience.count()));
}

void PoolTaskQueue::post(Task task)
{
    pool_.start(std::move(task));
}

void PoolTaskQueue::postDelayed(std::chrono::milliseconds delay, Task task)
{
    timer_.postDelayed(delay, [this, task = std::move(task)]() mutable { post(std::move(task)); });
}

} // namespace quillon
