#pragma once

#include "base/Mutex.h"
#include "indexing/Coalesce.h"
#include "indexing/RillFSEventStream.h"

#include <chrono>
#include <memory>
#include <optional>
#include <stop_token>
#include <string>
#include <vector>

namespace quillon {

class SearchBaseIgnorePaths;

/// Receives the changed folders.
class SearchBaseWatcherDelegate
{
public:
    SearchBaseWatcherDelegate() = default;
    virtual ~SearchBaseWatcherDelegate() = default;
    SearchBaseWatcherDelegate(const SearchBaseWatcherDelegate &) = delete;
    SearchBaseWatcherDelegate &operator=(const SearchBaseWatcherDelegate &) = delete;

    /// Folders, or included files, have come, gone or changed. It is called on the event queue with
    /// every path that is due, each as the service reported it. Stop is requested once that watch
    /// has been stopped.
    virtual void watchedFoldersChanged(const std::vector<std::string> &paths,
                                       const std::stop_token &stop) = 0;
};

/// Watches the include folders and reports each change once, some seconds after a burst of changes
/// began. Changes in skipped folders are left out.
///
/// Its operations may be called from any thread, but only one start or stop runs at a time. A watch
/// that has been stopped reports nothing any more, and the next one begins with nothing pending. By
/// the time of its destruction, the event queue no longer runs any of its tasks.
class SearchBaseWatcher
{
public:
    static constexpr double LATENCY = 10.0;
    static constexpr double WITHIN_PERIOD = 3.0;

    struct Services
    {
        FSEventStreamService &events;
        /// A serial queue, on which events are handled and reported.
        TaskQueue &eventQueue;
        /// The time from the first change to the event, in seconds.
        double latency = LATENCY;
        std::chrono::milliseconds coalesceDelay = Coalesce::DELAY;
    };

    /// A stream that does not start is started again from the main queue, which drops its tasks
    /// before this object ends.
    SearchBaseWatcher(const SearchBaseIgnorePaths &searchBaseIgnorePaths, const Services &services,
                      TaskQueue &mainQueue);
    ~SearchBaseWatcher();
    SearchBaseWatcher(const SearchBaseWatcher &) = delete;
    SearchBaseWatcher &operator=(const SearchBaseWatcher &) = delete;

    void setDelegate(std::weak_ptr<SearchBaseWatcherDelegate> delegate);

    /// Returns a record for a crawl, so that changes count from before a folder is listed; null
    /// when nothing can be watched.
    std::shared_ptr<CrawlRecord> beginRecord();
    /// Watches these paths, which are sorted, in place of what was watched before.
    void startWatching(std::vector<std::string> paths, std::shared_ptr<const WatchFilter> items,
                       std::shared_ptr<CrawlRecord> recorded) EXCLUDES(mutex_);
    void stopWatching() EXCLUDES(mutex_);
    /// Passes the paths on as if the disk had reported a change of each.
    void report(std::vector<std::string> paths) EXCLUDES(mutex_);

    /// Reports everything that has happened so far. It is not called on the event queue.
    void settle() EXCLUDES(mutex_);
    /// Returns nothing while nothing is watched.
    std::optional<FSEventStatus> status() const EXCLUDES(mutex_);

private:
    static constexpr std::chrono::milliseconds FIRST_START_DELAY{1'000};
    static constexpr std::chrono::milliseconds LONGEST_START_DELAY{60'000};

    void startStream(const std::stop_token &stop, std::chrono::milliseconds delay);
    bool isStartRefused(const std::stop_token &stop) EXCLUDES(mutex_);
    void received(const RillFSEventsEvent &event, const std::vector<std::string> &roots,
                  const std::stop_token &stop) EXCLUDES(mutex_);
    void becameDue(const std::string &path, const std::stop_token &stop);
    void tellWhatIsDue() EXCLUDES(mutex_);

    const SearchBaseIgnorePaths &searchBaseIgnorePaths_;
    const Services services_;
    TaskQueue &mainQueue_;
    // Only the event queue uses the fields below.
    Coalesce coalesce_;
    /// The paths that the next task reports, and the stop of the watch that they belong to.
    std::vector<std::string> due_;
    std::stop_token dueStop_;

    mutable Mutex mutex_;
    std::weak_ptr<SearchBaseWatcherDelegate> delegate_ GUARDED_BY(mutex_);
    /// It is null at first and when no stream could be made. A stopped stream is kept.
    std::shared_ptr<RillFSEventStream> eventStream_ GUARDED_BY(mutex_);
    /// The stop is requested when the stream has been stopped.
    std::stop_source stop_ GUARDED_BY(mutex_);
};

} // namespace quillon
