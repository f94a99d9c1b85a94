#include "base/BoundedCalls.h"

#include <thread>

namespace quillon {

/// A thread that makes one call after the other until it is dismissed.
class BoundedCalls::Helper
{
public:
    static std::shared_ptr<Helper> start()
    {
        auto helper = std::make_shared<Helper>();
        std::thread([helper] { helper->work(); }).detach();
        return helper;
    }

    /// False when the call has not returned in time; the helper is of no use any more then.
    bool call(std::function<void()> task, std::chrono::milliseconds patience) EXCLUDES(mutex_)
    {
        const auto end = std::chrono::steady_clock::now() + patience;
        const MutexLock lock(mutex_);
        task_ = std::move(task);
        isBusy_ = true;
        changed_.notifyAll();
        while (isBusy_) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(
                end - std::chrono::steady_clock::now());
            if (left.count() <= 0) {
                isDismissed_ = true;
                return false;
            }
            changed_.waitFor(mutex_, left);
        }
        return true;
    }

    void dismiss() EXCLUDES(mutex_)
    {
        const MutexLock lock(mutex_);
        isDismissed_ = true;
        changed_.notifyAll();
    }

private:
    void work() EXCLUDES(mutex_)
    {
        for (std::function<void()> task = next(); task; task = next())
            task();
    }

    /// Tells that the last task is done and waits for another one; empty after the last.
    std::function<void()> next() EXCLUDES(mutex_)
    {
        const MutexLock lock(mutex_);
        if (!task_)
            isBusy_ = false;
        changed_.notifyAll();
        while (!task_ && !isDismissed_)
            changed_.wait(mutex_);
        return std::exchange(task_, nullptr);
    }

    Mutex mutex_;
    Condition changed_;
    std::function<void()> task_ GUARDED_BY(mutex_);
    bool isBusy_ GUARDED_BY(mutex_) = false;
    bool isDismissed_ GUARDED_BY(mutex_) = false;
};

BoundedCalls::~BoundedCalls()
{
    for (const std::shared_ptr<Helper> &helper : idle_)
        helper->dismiss();
}

bool BoundedCalls::runTask(std::function<void()> task, std::chrono::milliseconds limit)
{
    if (limit.count() <= 0)
        return false;
    std::shared_ptr<Helper> helper = takeHelper();
    if (!helper->call(std::move(task), limit))
        return false;
    const MutexLock lock(mutex_);
    idle_.push_back(std::move(helper));
    return true;
}

std::shared_ptr<BoundedCalls::Helper> BoundedCalls::takeHelper()
{
    const MutexLock lock(mutex_);
    if (idle_.empty())
        return Helper::start();
    std::shared_ptr<Helper> helper = std::move(idle_.back());
    idle_.pop_back();
    return helper;
}

} // namespace quillon
