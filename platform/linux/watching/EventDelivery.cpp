#include "platform/linux/watching/EventDelivery.h"

#include "base/PathText.h"
#include "base/TaskQueue.h"

#include <algorithm>
#include <utility>

namespace quillon {

EventDelivery::EventDelivery(FSEventStreamCallback callback, void *info,
                             std::shared_ptr<std::atomic<std::uint64_t>> lastID)
    : callback_(std::move(callback)), info_(info), lastID_(std::move(lastID))
{}

void EventDelivery::setQueue(TaskQueue &queue)
{
    const MutexLock lock(mutex_);
    queue_ = &queue;
}

bool EventDelivery::hasQueue() const
{
    const MutexLock lock(mutex_);
    return queue_ != nullptr;
}

void EventDelivery::deliver(const std::vector<ChangeLog::Change> &changes)
{
    const MutexLock lock(mutex_);
    if (stopped_ || queue_ == nullptr)
        return;
    Batch batch;
    for (const ChangeLog::Change &change : changes) {
        if (isExcluded(change.path))
            continue;
        batch.paths.push_back(change.path);
        batch.flags.push_back(change.flags);
        batch.ids.push_back(++*lastID_);
    }
    if (batch.paths.empty())
        return;
    latestID_ = batch.ids.back();
    queue_->post([self = shared_from_this(), batch = std::move(batch)] { self->call(batch); });
}

void EventDelivery::call(const Batch &batch) const
{
    if (!stopped_)
        callback_(info_, batch.paths.size(), batch.paths, batch.flags, batch.ids);
}

void EventDelivery::stop()
{
    const MutexLock lock(mutex_);
    stopped_ = true;
    queue_ = nullptr;
}

void EventDelivery::exclude(const std::vector<std::string> &paths)
{
    const MutexLock lock(mutex_);
    excluded_.clear();
    for (const std::string &path : paths)
        excluded_.emplace_back(withoutTrailingSlashes(path));
}

bool EventDelivery::isExcluded(const std::string &path) const
{
    return std::ranges::any_of(
        excluded_, [&](const std::string &excluded) { return isAtOrBelow(path, excluded); });
}

} // namespace quillon
