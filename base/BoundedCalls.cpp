#include "base/BoundedCalls.h"

#include "base/PathText.h"

#include <algorithm>
#include <string_view>
#include <system_error>
#include <thread>

namespace quillon {

/// The disks that did not answer, and the calls into them that have not returned yet.
struct BoundedCalls::Silence
{
    bool covers(std::string_view path, Clock::time_point now, std::size_t mostLeftBehind)
    {
        const MutexLock lock(mutex);
        std::erase_if(until, [now](const auto &disk) { return disk.second <= now; });
        return leftBehind >= mostLeftBehind || std::ranges::any_of(until, [path](const auto &disk) {
                   return isAtOrBelow(path, disk.first);
               });
    }
    void begin(const std::string &disk, Clock::time_point end)
    {
        const MutexLock lock(mutex);
        ++leftBehind;
        until[disk] = end;
    }
    void end(const std::string &disk)
    {
        const MutexLock lock(mutex);
        --leftBehind;
        until.erase(disk);
    }

    Mutex mutex;
    std::map<std::string, Clock::time_point> until GUARDED_BY(mutex);
    std::size_t leftBehind GUARDED_BY(mutex) = 0;
};

/// A thread that makes one call after the other until it is dismissed.
class BoundedCalls::Helper
{
public:
    /// Returns null when the system has no thread to give.
    static std::shared_ptr<Helper> start()
    {
        auto helper = std::make_shared<Helper>();
        try {
            std::thread([helper] { helper->work(); }).detach();
        } catch (const std::system_error &) {
            return nullptr;
        }
        return helper;
    }

    /// Returns false when the call has not returned in time. The helper can make no further calls
    /// then. It calls gaveUp() at once, and hasReturned() if the call ever returns.
    bool call(std::function<void()> task, std::chrono::milliseconds patience,
              const std::function<void()> &gaveUp, std::function<void()> hasReturned)
        EXCLUDES(mutex_)
    {
        const auto end = Clock::now() + patience;
        const MutexLock lock(mutex_);
        task_ = std::move(task);
        isBusy_ = true;
        changed_.notifyAll();
        while (isBusy_) {
            const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
            if (left.count() <= 0) {
                isDismissed_ = true;
                hasReturned_ = std::move(hasReturned);
                gaveUp();
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

    /// Notes that the last task is done and waits for the next one. Returns an empty function after
    /// the last task.
    std::function<void()> next() EXCLUDES(mutex_)
    {
        const MutexLock lock(mutex_);
        if (!task_)
            isBusy_ = false;
        if (hasReturned_)
            hasReturned_();
        changed_.notifyAll();
        while (!task_ && !isDismissed_)
            changed_.wait(mutex_);
        return std::exchange(task_, nullptr);
    }

    Mutex mutex_;
    Condition changed_;
    std::function<void()> task_ GUARDED_BY(mutex_);
    std::function<void()> hasReturned_ GUARDED_BY(mutex_);
    bool isBusy_ GUARDED_BY(mutex_) = false;
    bool isDismissed_ GUARDED_BY(mutex_) = false;
};

BoundedCalls::BoundedCalls() : BoundedCalls(Options()) {}

BoundedCalls::BoundedCalls(Options options)
    : options_(std::move(options)), silence_(std::make_shared<Silence>())
{}

BoundedCalls::~BoundedCalls()
{
    for (const std::shared_ptr<Helper> &helper : idle_)
        helper->dismiss();
}

bool BoundedCalls::runTask(const std::string &path, std::chrono::milliseconds patience,
                           std::function<void()> task)
{
    if (patience.count() <= 0 || silence_->covers(path, options_.now(), options_.mostLeftBehind))
        return false;
    std::shared_ptr<Helper> helper = takeHelper();
    if (!helper) {
        task();
        return true;
    }
    const auto disk = std::make_shared<std::string>();
    const auto gaveUp = [&] {
        *disk = options_.diskOf ? options_.diskOf(path) : path;
        silence_->begin(*disk, options_.now() + options_.silence);
    };
    if (!helper->call(std::move(task), patience, gaveUp,
                      [silence = silence_, disk] { silence->end(*disk); }))
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
