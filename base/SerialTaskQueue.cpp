#include "base/SerialTaskQueue.h"

#include <system_error>
#include <utility>

#include <pthread.h>

namespace quillon {

namespace {

/// Linux accepts no longer name for a thread.
constexpr std::size_t MAX_THREAD_NAME = 15;

} // namespace

SerialTaskQueue::SerialTaskQueue(std::string label) : label_(std::move(label)) {}

SerialTaskQueue::~SerialTaskQueue()
{
    finish(std::chrono::milliseconds::zero());
    if (thread_.joinable())
        thread_.join();
}

/// Where the system has no thread to give, the tasks wait until it has one for a later task.
void SerialTaskQueue::startThread()
{
    try {
        thread_ = std::thread([this] { run(); });
    } catch (const std::system_error &) {
        return;
    }
    hasEnded_ = false;
    const std::string name = label_.substr(label_.rfind('.') + 1).substr(0, MAX_THREAD_NAME);
    ::pthread_setname_np(thread_.native_handle(), name.c_str());
}

void SerialTaskQueue::post(Task task)
{
    postDelayed(std::chrono::milliseconds::zero(), std::move(task));
}

void SerialTaskQueue::postDelayed(std::chrono::milliseconds delay, Task task)
{
    const MutexLock lock(mutex_);
    if (isClosed_)
        return;
    if (!thread_.joinable())
        startThread();
    // The time is read under the lock, so that it never falls from one task to the next.
    tasks_.emplace(Clock::now() + delay, std::move(task));
    changed_.notifyAll();
}

bool SerialTaskQueue::finish(std::chrono::milliseconds patience)
{
    std::multimap<Clock::time_point, Task> dropped;
    const auto end = Clock::now() + patience;
    const MutexLock lock(mutex_);
    isClosed_ = true;
    std::swap(dropped, tasks_);
    changed_.notifyAll();
    for (auto now = Clock::now(); !hasEnded_ && now < end; now = Clock::now())
        changed_.waitFor(mutex_, std::chrono::ceil<std::chrono::milliseconds>(end - now));
    return hasEnded_;
}

void SerialTaskQueue::run()
{
    while (Task task = take())
        task();
    const MutexLock lock(mutex_);
    hasEnded_ = true;
    changed_.notifyAll();
}

TaskQueue::Task SerialTaskQueue::take()
{
    const MutexLock lock(mutex_);
    while (!isClosed_) {
        if (tasks_.empty()) {
            changed_.wait(mutex_);
            continue;
        }
        const auto next = tasks_.begin();
        const auto now = Clock::now();
        if (next->first > now) {
            changed_.waitFor(mutex_,
                             std::chrono::ceil<std::chrono::milliseconds>(next->first - now));
            continue;
        }
        Task task = std::move(next->second);
        tasks_.erase(next);
        return task;
    }
    return {};
}

} // namespace quillon
