#pragma once

#include "indexing/RillFSEvents.h"
#include "platform/FSEventStream.h"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

namespace quillon {

/// A stream of the event service that hands over one event for each changed path.
///
/// Each operation is one call of the service, and the service's rules on threads hold. The stream
/// is destroyed after invalidate() and while no handler runs, which means on its queue or when that
/// queue is idle.
class RillFSEventStream
{
public:
    /// It is called on the stream's queue.
    using Handler = std::function<void(const RillFSEventsEvent &event)>;

    struct Terms
    {
        std::vector<std::string> pathsToWatch;
        RillFSEventsEventID sinceWhen = RillFSEventsEventID::sinceNow();
        /// The time from the first change to the delivery, in seconds.
        double latency = 0;
        RillFSEventsCreateFlags flags;
        Handler handler;
        std::shared_ptr<const WatchFilter> items;
        /// The record of a crawl of these paths; null when there was none.
        std::shared_ptr<CrawlRecord> recorded;
    };
    /// The stream, or the reason why there is none.
    using Made = std::variant<std::unique_ptr<RillFSEventStream>, RillFSEventsError>;
    static Made make(FSEventStreamService &service, Terms terms);

    ~RillFSEventStream() = default;
    RillFSEventStream(const RillFSEventStream &) = delete;
    RillFSEventStream &operator=(const RillFSEventStream &) = delete;

    void setDispatchQueue(TaskQueue &queue) { rawref_->setDispatchQueue(queue); }
    /// Returns nothing when the stream has started.
    std::optional<RillFSEventsError> start();
    void stop() { rawref_->stop(); }
    void invalidate() { rawref_->invalidate(); }

    RillFSEventsEventID getLatestEventID() const { return {rawref_->latestEventID()}; }
    std::vector<std::string> copyPathsBeingWatched() const { return rawref_->pathsBeingWatched(); }
    void flushAsync() { rawref_->flushAsync(); }
    void flushSync() { rawref_->flushSync(); }
    bool setExclusionPaths(const std::vector<std::string> &paths)
    {
        return rawref_->setExclusionPaths(paths);
    }
    std::string description() const { return rawref_->description(); }
    FSEventStatus status() const { return rawref_->status(); }

private:
    explicit RillFSEventStream(Handler handler) : handler_(std::move(handler)) {}
    static void receive(void *info, std::size_t count, const FSEventPaths &paths,
                        const std::vector<std::uint32_t> &flags,
                        const std::vector<std::uint64_t> &ids);

    const Handler handler_;
    std::unique_ptr<FSEventStream> rawref_;
};

} // namespace quillon
