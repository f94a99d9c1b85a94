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

    /// Folders, or included files, have come, gone or changed. Called on the event queue with every
    /// path that is due, each as the service says it. Stop is requested once that watch has been
    /// stopped.
    virtual void watchedFoldersChanged(const std::vector<std::string> &paths,
                                       const std::stop_token &stop) = 0;
};

/// Watches the include folders and tells of each change once, some seconds after a burst of them
/// began, skipped folders left out.
///
/// Its operations may be called from any thread, starting and stopping one at a time. Nothing is
/// told any more of a watch that has been stopped, and the next one begins with nothing pending.
/// The event queue runs nothing of it any more when this is destroyed.
class SearchBaseWatcher
{
public:
    static constexpr double LATENCY = 10.0;
    static constexpr double WITHIN_PERIOD = 3.0;

    struct Services
    {
        FSEventStreamService &events;
        /// Serial; events and what is told of them run there.
        TaskQueue &eventQueue;
        /// Seconds from the first change to the event.
        double latency = LATENCY;
        std::chrono::milliseconds coalesceDelay = Coalesce::DELAY;
    };

    SearchBaseWatcher(const SearchBaseIgnorePaths &searchBaseIgnorePaths, const Services &services);
    ~SearchBaseWatcher();
    SearchBaseWatcher(const SearchBaseWatcher &) = delete;
    SearchBaseWatcher &operator=(const SearchBaseWatcher &) = delete;

    void setDelegate(std::weak_ptr<SearchBaseWatcherDelegate> delegate);

    /// What a crawl is given so that changes count from before a folder is listed; null when
    /// nothing can be watched.
    std::shared_ptr<CrawlRecord> beginRecord();
    /// Watches these paths, which are sorted, in place of what was watched before.
    void startWatching(std::vector<std::string> paths, std::shared_ptr<const WatchFilter> items,
                       std::shared_ptr<CrawlRecord> recorded) EXCLUDES(mutex_);
    void stopWatching() EXCLUDES(mutex_);

    /// Lets everything that has happened so far be told. Not called on the event queue.
    void settle() EXCLUDES(mutex_);
    /// The result is absent while nothing is watched.
    std::optional<FSEventStatus> status() const EXCLUDES(mutex_);

private:
    void received(const RillFSEventsEvent &event, const std::vector<std::string> &roots,
                  const std::stop_token &stop) EXCLUDES(mutex_);
    void becameDue(const std::string &path, const std::stop_token &stop);
    void tellWhatIsDue() EXCLUDES(mutex_);

    const SearchBaseIgnorePaths &searchBaseIgnorePaths_;
    const Services services_;
    // Only the event queue uses what follows.
    Coalesce coalesce_;
    /// What is told together with the next task, and the watch that it belongs to.
    std::vector<std::string> due_;
    std::stop_token dueStop_;

    mutable Mutex mutex_;
    std::weak_ptr<SearchBaseWatcherDelegate> delegate_ GUARDED_BY(mutex_);
    /// It is absent at first and when none could be made; kept when it is stopped.
    std::shared_ptr<RillFSEventStream> eventStream_ GUARDED_BY(mutex_);
    /// Requested when the stream has been stopped.
    std::stop_source stop_ GUARDED_BY(mutex_);
};

} // namespace quillon
