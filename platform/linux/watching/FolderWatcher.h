#pragma once

#include "base/Mutex.h"
#include "platform/FSEventStream.h"
#include "platform/linux/disk/Descriptor.h"
#include "platform/linux/watching/EventDelivery.h"
#include "platform/linux/watching/InotifyEventService.h"
#include "platform/linux/watching/InotifyQueue.h"
#include "platform/linux/watching/WatchLoop.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// A thread that watches folders for a stream. It begins with what a crawl has listed. Folders on
/// remote file systems are passed to another watcher of this kind, so that a server that does not
/// answer delays nothing else. Safe from every thread.
///
/// The thread holds the watcher too, and nobody waits for the thread to end.
class FolderWatcher : public std::enable_shared_from_this<FolderWatcher>
{
public:
    enum class Kind
    {
        local,
        remote,
    };
    struct Stream
    {
        std::vector<std::string> roots;
        std::chrono::steady_clock::duration latency{};
        std::uint32_t rootFlags = 0;
        /// The folders that a crawl of the roots has listed; null when nobody has crawled them.
        std::shared_ptr<const CrawledTree> crawled;
        /// If nobody has crawled the roots, changes count from this time on.
        std::optional<std::int64_t> quietSince;
        std::shared_ptr<EventDelivery> delivery;
    };

    FolderWatcher(std::shared_ptr<const WatchFilter> items, InotifyOptions options, Kind kind,
                  Stream stream);

    /// Begins to watch and to deliver changes. Returns false when the system has no thread to give.
    bool start();
    /// Asks the thread to end. The thread then releases all watches.
    void stop() EXCLUDES(mailMutex_);
    /// Has the thread deliver what has happened so far. Returns the number of this flush.
    std::uint64_t requestFlush() EXCLUDES(mailMutex_);
    /// Requests a flush and waits until it has been delivered, until the thread ends, or until that
    /// time has passed.
    void flush(std::optional<std::chrono::milliseconds> patience) EXCLUDES(mailMutex_);
    /// Returns the watcher of remote folders; null when there have been none.
    std::shared_ptr<FolderWatcher> remote() const EXCLUDES(mailMutex_);

    FSEventStatus status() const;
    /// Returns the bytes of memory that the folders took at the last flush.
    std::size_t bytes() const { return bytes_; }

private:
    using Clock = std::chrono::steady_clock;

    /// An order from the local watcher to the remote one.
    struct RootOrder
    {
        enum class What
        {
            hasCome,
            hasGone,
            /// All roots that were there at the beginning have been ordered.
            isBegun,
        };
        What what;
        std::string path = {};
    };

    void run();
    bool wait();
    Clock::time_point nextWakeUp() const;
    void turn();
    void begin();
    void flushIfDue() EXCLUDES(mailMutex_);
    std::optional<std::uint64_t> requestedFlush() const EXCLUDES(mailMutex_);
    void sweepIfDue();
    void followOrders() EXCLUDES(mailMutex_);
    void endBeginning();
    void deliver();
    void publish();
    void passRemoteChanges();
    void publishCounts();
    void reportShortage();
    bool goesOn();
    void end() EXCLUDES(mailMutex_);
    void wake() const;

    std::shared_ptr<FolderWatcher> remoteOrNew() EXCLUDES(mailMutex_);
    void order(RootOrder order) EXCLUDES(mailMutex_);

    const std::shared_ptr<const WatchFilter> items_;
    const InotifyOptions options_;
    const Kind kind_;
    const Descriptor wakeUp_;
    const Descriptor mountInfo_;
    std::atomic<bool> stopping_ = false;

    std::atomic<std::size_t> watched_ = 0;
    std::atomic<std::size_t> folders_ = 0;
    std::atomic<std::size_t> budget_ = 0;
    std::atomic<std::size_t> bytes_ = 0;

    /// Only the thread uses the fields below once it has started.
    Stream stream_;
    std::unique_ptr<InotifyQueue> queue_;
    std::unique_ptr<WatchLoop> loop_;
    bool isBeginning_ = true;
    bool eventsWait_ = false;
    bool mountsChanged_ = false;
    Clock::time_point readNext_{};
    Clock::time_point deadline_ = Clock::time_point::max();
    Clock::time_point retryBudget_ = Clock::time_point::max();
    bool isShortageReported_ = false;

    mutable Mutex mailMutex_;
    std::vector<RootOrder> orders_ GUARDED_BY(mailMutex_);
    std::shared_ptr<FolderWatcher> remote_ GUARDED_BY(mailMutex_);
    Condition flushed_;
    /// Flushes are numbered from one. Each stands for the earlier ones too.
    std::uint64_t lastRequested_ GUARDED_BY(mailMutex_) = 0;
    std::uint64_t lastFlushed_ GUARDED_BY(mailMutex_) = 0;
    bool hasEnded_ GUARDED_BY(mailMutex_) = false;
};

} // namespace quillon
