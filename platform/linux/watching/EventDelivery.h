#pragma once

#include "base/Mutex.h"
#include "platform/FSEventStream.h"
#include "platform/linux/watching/ChangeLog.h"

#include <atomic>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace quillon {

/// Passes changes from the watching threads to the receiver of a stream. Safe from every thread.
class EventDelivery : public std::enable_shared_from_this<EventDelivery>
{
public:
    /// IDs are taken from a count that all streams share.
    EventDelivery(FSEventStreamCallback callback, void *info,
                  std::shared_ptr<std::atomic<std::uint64_t>> lastID);

    /// Sets the queue on which the callback runs. The queue outlives this object or the call of
    /// stop().
    void setQueue(TaskQueue &queue) EXCLUDES(mutex_);
    bool hasQueue() const EXCLUDES(mutex_);
    /// Posts the changes as one batch, if there are any.
    void deliver(const std::vector<ChangeLog::Change> &changes) EXCLUDES(mutex_);
    /// After this call nothing is posted, and no callback begins.
    void stop() EXCLUDES(mutex_);
    void exclude(const std::vector<std::string> &paths) EXCLUDES(mutex_);
    /// Returns the number of the last event that was posted; 0 before the first.
    std::uint64_t latestID() const { return latestID_; }

private:
    struct Batch
    {
        std::vector<std::string> paths;
        std::vector<std::uint32_t> flags;
        std::vector<std::uint64_t> ids;
    };

    void call(const Batch &batch) const;
    bool isExcluded(const std::string &path) const REQUIRES(mutex_);

    const FSEventStreamCallback callback_;
    void *const info_;
    const std::shared_ptr<std::atomic<std::uint64_t>> lastID_;
    std::atomic<std::uint64_t> latestID_ = 0;
    std::atomic<bool> stopped_ = false;

    /// It is held while a batch is numbered and posted, so that IDs rise in the queue.
    mutable Mutex mutex_;
    TaskQueue *queue_ GUARDED_BY(mutex_) = nullptr;
    std::vector<std::string> excluded_ GUARDED_BY(mutex_);
};

} // namespace quillon
