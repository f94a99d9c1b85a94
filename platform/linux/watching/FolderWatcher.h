#pragma once

#include "base/Mutex.h"
#include "platform/FSEventStream.h"
#include "platform/linux/disk/Descriptor.h"
#include "platform/linux/watching/EventDelivery.h"
#include "platform/linux/watching/FlushRequests.h"
#include "platform/linux/watching/InotifyOptions.h"
#include "platform/linux/watching/InotifyQueue.h"
#include "platform/linux/watching/WatchCore.h"

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon {

/// A thread that watches folders, as a stream. A crawl that comes before notes here what it lists;
/// the stream begins with that. Folders on remote file systems are handed to another one of its
/// kind, so that a server that does not answer holds up nothing else. Safe from every thread.
///
/// The thread holds it too and is never waited for.
class FolderWatcher : public std::enable_shared_from_this<FolderWatcher>
{
public:
    using Folder = FSEventArming::Folder;

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
        /// When nobody has crawled the roots: since when changes in them count.
        std::optional<std::int64_t> quietSince;
        std::shared_ptr<EventDelivery> delivery;
    };

    FolderWatcher(std::shared_ptr<const FSEventItemTest> items, InotifyOptions options, Kind kind);
    ~FolderWatcher();

    /// Begins to read events; the rest is called after this. False where there can be no thread.
    bool startThread();

    Folder armRoot(const std::string &path) EXCLUDES(mutex_);
    Folder arm(Folder parent, std::string_view name, const FolderStamp &stamp);
    void listed(Folder folder, std::uint64_t items);
    void notListed(Folder folder);
    void notEntered(Folder parent, std::string_view name);

    /// Nothing is armed from outside any more; from now on changes are delivered.
    void watch(Stream stream) EXCLUDES(mutex_);
    /// Lets the thread end, which then gives all watches back.
    void stop() EXCLUDES(mailMutex_);
    FlushRequests::Number requestFlush();
    /// Returns when that flush has been delivered, the thread ends or the patience does.
    void waitForFlush(FlushRequests::Number number,
                      std::optional<std::chrono::milliseconds> patience)
    {
        flushes_.wait(number, patience);
    }
    /// The one for remote folders; null when there have been none.
    std::shared_ptr<FolderWatcher> remote() const EXCLUDES(mailMutex_);

    std::int64_t wallClock() const { return wallClock_(); }
    FSEventStatus status() const;
    /// The number of folders and the memory in bytes that they take here.
    std::pair<std::size_t, std::size_t> measure() const EXCLUDES(mutex_);

private:
    using Clock = std::chrono::steady_clock;
    static constexpr Folder REMOTE = Folder{1} << 31;

    struct RootOrder
    {
        std::string path;
        bool hasCome = false;
    };

    void run();
    bool wait() EXCLUDES(mutex_);
    Clock::time_point nextWakeUp() const REQUIRES(mutex_);
    void turn() REQUIRES(mutex_);
    void begin() REQUIRES(mutex_);
    void flushIfDue() REQUIRES(mutex_);
    void sweepIfDue() REQUIRES(mutex_);
    void followOrders() REQUIRES(mutex_);
    void deliver() REQUIRES(mutex_);
    void publish() REQUIRES(mutex_);
    void publishCounts() REQUIRES(mutex_);
    void reportShortage() REQUIRES(mutex_);
    bool goesOn() NO_THREAD_SAFETY_ANALYSIS; // called from within turn()
    void end() EXCLUDES(mutex_);
    void wake() const;

    std::shared_ptr<FolderWatcher> remoteOrNew() EXCLUDES(mailMutex_);
    void orderRoot(const std::string &path, bool hasCome) EXCLUDES(mailMutex_);

    const std::shared_ptr<const FSEventItemTest> items_;
    const InotifyOptions options_;
    const Kind kind_;
    const WallClock wallClock_;
    const Descriptor wakeUp_;
    const Descriptor mountInfo_;
    std::atomic<bool> stopping_ = false;
    FlushRequests flushes_;
    CrawlNotes notes_;
    /// Absent for remote folders.
    std::optional<MountTable> mountsAtStart_;

    std::atomic<std::size_t> watched_ = 0;
    std::atomic<std::size_t> folders_ = 0;
    std::atomic<std::size_t> budget_ = 0;

    /// Held by the thread while it works.
    mutable Mutex mutex_;
    /// Both gone once the thread has ended.
    std::shared_ptr<InotifyQueue> queue_ GUARDED_BY(mutex_);
    std::unique_ptr<WatchCore> core_ GUARDED_BY(mutex_);
    std::optional<Stream> stream_ GUARDED_BY(mutex_);
    bool begun_ GUARDED_BY(mutex_) = false;
    bool eventsWait_ GUARDED_BY(mutex_) = false;
    bool mountsChanged_ GUARDED_BY(mutex_) = false;
    Clock::time_point readNext_ GUARDED_BY(mutex_){};
    Clock::time_point deadline_ GUARDED_BY(mutex_) = Clock::time_point::max();
    Clock::time_point retryBudget_ GUARDED_BY(mutex_) = Clock::time_point::max();

    /// Taken after the other one, briefly.
    mutable Mutex mailMutex_;
    std::vector<RootOrder> orders_ GUARDED_BY(mailMutex_);
    std::shared_ptr<FolderWatcher> remote_ GUARDED_BY(mailMutex_);
    std::optional<Stream> remoteStream_ GUARDED_BY(mailMutex_);
};

} // namespace quillon
