#include "indexing/SearchBaseWatcher.h"

#include "base/PathText.h"
#include "indexing/SearchBaseIgnorePaths.h"

#include <algorithm>
#include <functional>
#include <future>
#include <string_view>
#include <utility>

// Events are handled and passed on to the delegate on the event queue; watching starts and stops on
// other threads. Three things keep an old watch out of a new one. Its stop token travels with each
// of its events, and the delegate checks it again. A task of the event queue drops what is pending,
// before anything of the next stream, since the queue is serial. And such a task also destroys the
// stream, so that no event is being handled then.

namespace quillon {

SearchBaseWatcher::SearchBaseWatcher(const SearchBaseIgnorePaths &searchBaseIgnorePaths,
                                     const Services &services, TaskQueue &mainQueue)
    : searchBaseIgnorePaths_(searchBaseIgnorePaths),
      services_(services),
      mainQueue_(mainQueue),
      coalesce_(WITHIN_PERIOD, services.coalesceDelay)
{}

SearchBaseWatcher::~SearchBaseWatcher()
{
    const MutexLock lock(mutex_);
    stop_.request_stop();
    if (eventStream_) {
        eventStream_->stop();
        eventStream_->invalidate();
    }
}

void SearchBaseWatcher::setDelegate(std::weak_ptr<SearchBaseWatcherDelegate> delegate)
{
    const MutexLock lock(mutex_);
    delegate_ = std::move(delegate);
}

std::shared_ptr<CrawlRecord> SearchBaseWatcher::beginRecord()
{
    return services_.events.beginRecord();
}

void SearchBaseWatcher::startWatching(std::vector<std::string> paths,
                                      std::shared_ptr<const WatchFilter> items,
                                      std::shared_ptr<CrawlRecord> recorded)
{
    stopWatching();
    const std::stop_source stop;
    auto made = RillFSEventStream::make(
        services_.events,
        {.pathsToWatch = paths,
         .sinceWhen = RillFSEventsEventID::sinceNow(),
         .latency = services_.latency,
         .flags = {RillFSEventsCreateFlags::WATCH_ROOT},
         .handler = [this, paths = std::move(paths), token = stop.get_token()](
                        const RillFSEventsEvent &event) { received(event, paths, token); },
         .items = std::move(items),
         .recorded = std::move(recorded)});
    std::shared_ptr<RillFSEventStream> stream;
    if (auto *one = std::get_if<std::unique_ptr<RillFSEventStream>>(&made))
        stream = std::move(*one);
    if (stream)
        stream->setDispatchQueue(services_.eventQueue);
    {
        const MutexLock lock(mutex_);
        stop_ = stop;
        std::swap(eventStream_, stream);
    }
    startStream(stop.get_token(), FIRST_START_DELAY);
    if (stream)
        services_.eventQueue.post([stream = std::move(stream)] {});
}

/// A stream does not start while the system has no thread to give, so it is started again later.
/// The event queue cannot do that, since it may be waiting for a thread as well.
void SearchBaseWatcher::startStream(const std::stop_token &stop, std::chrono::milliseconds delay)
{
    if (isStartRefused(stop))
        mainQueue_.postDelayed(delay, [this, stop, delay] {
            startStream(stop, std::min(2 * delay, LONGEST_START_DELAY));
        });
}

bool SearchBaseWatcher::isStartRefused(const std::stop_token &stop)
{
    const MutexLock lock(mutex_);
    return eventStream_ && !stop.stop_requested() && eventStream_->start();
}

void SearchBaseWatcher::stopWatching()
{
    const MutexLock lock(mutex_);
    if (!eventStream_ || !stop_.request_stop())
        return;
    eventStream_->stop();
    eventStream_->invalidate();
    services_.eventQueue.post([this] {
        coalesce_.forgetAll();
        due_.clear();
    });
}

void SearchBaseWatcher::received(const RillFSEventsEvent &event,
                                 const std::vector<std::string> &roots, const std::stop_token &stop)
{
    if (stop.stop_requested())
        return;
    if (event.flag == RillFSEventsEventFlags{RillFSEventsEventFlags::HISTORY_DONE})
        return;
    // Patterns apply to folders: a file is skipped with the folder that it is in.
    std::string_view folder = event.path;
    if (event.flag && (event.flag->rawValue & RillFSEventsEventFlags::ITEM_IS_FILE) != 0)
        folder = parentFolder(folder);
    // An include folder is indexed whatever its path.
    const bool isRoot = std::ranges::binary_search(roots, folder, std::less<>());
    if (!isRoot && searchBaseIgnorePaths_.shouldSkipPath(folder))
        return;
    coalesce_.coalesce(event.path, services_.eventQueue,
                       [this, stop](const std::string &path) { becameDue(path, stop); });
}

/// Paths that are due at the same time are passed on together, since each update has a fixed cost.
void SearchBaseWatcher::becameDue(const std::string &path, const std::stop_token &stop)
{
    due_.push_back(path);
    if (due_.size() > 1)
        return;
    dueStop_ = stop;
    services_.eventQueue.post([this] { tellWhatIsDue(); });
}

void SearchBaseWatcher::tellWhatIsDue()
{
    std::shared_ptr<SearchBaseWatcherDelegate> delegate;
    {
        const MutexLock lock(mutex_);
        delegate = delegate_.lock();
    }
    const std::vector<std::string> due = std::exchange(due_, {});
    if (delegate && !due.empty() && !dueStop_.stop_requested())
        delegate->watchedFoldersChanged(due, std::stop_token(dueStop_));
}

void SearchBaseWatcher::report(std::vector<std::string> paths)
{
    const MutexLock lock(mutex_);
    services_.eventQueue.post([this, paths = std::move(paths), stop = stop_.get_token()] {
        for (const std::string &path : paths)
            becameDue(path, stop);
    });
}

void SearchBaseWatcher::settle()
{
    std::shared_ptr<RillFSEventStream> stream;
    {
        const MutexLock lock(mutex_);
        if (eventStream_ && !stop_.stop_requested())
            stream = eventStream_;
    }
    if (!stream)
        return;
    stream->flushSync();
    // This task runs after the events. Each event posts a task that passes it on later; that task
    // is due no later than the second one below, and was posted before it.
    services_.eventQueue.postAndWait([stream = std::move(stream)] {});
    auto end = std::make_shared<std::promise<void>>();
    const std::future<void> ended = end->get_future();
    services_.eventQueue.postDelayed(services_.coalesceDelay,
                                     [end = std::move(end)] { end->set_value(); });
    ended.wait();
    // A task that runs before this one passes on what has become due by then.
    services_.eventQueue.postAndWait([] {});
}

std::optional<FSEventStatus> SearchBaseWatcher::status() const
{
    const MutexLock lock(mutex_);
    if (!eventStream_ || stop_.stop_requested())
        return std::nullopt;
    return eventStream_->status();
}

} // namespace quillon
