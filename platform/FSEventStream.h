#pragma once

#include "platform/FolderStamp.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace quillon {

class TaskQueue;

/// What the service asks about the items below the folders it watches. Safe from every thread, and
/// answers the same as long as the watch lasts, but for isIndexed().
class WatchFilter
{
public:
    enum class Folder
    {
        /// Neither it nor anything below it concerns anybody.
        skipped,
        /// Its coming and going counts, its content does not.
        listed,
        entered,
    };

    WatchFilter() = default;
    virtual ~WatchFilter() = default;
    WatchFilter(const WatchFilter &) = delete;
    WatchFilter &operator=(const WatchFilter &) = delete;

    /// Judges a folder by its absolute path: a root, which is never skipped, or a folder whose
    /// parent is entered.
    virtual Folder folder(std::string_view path) const = 0;
    /// Judges anything else by its name.
    virtual bool includesFile(std::string_view name) const = 0;
    /// Returns whether the index holds the path at this moment.
    virtual bool isIndexed(std::string_view path) const = 0;
};

/// What tells apart which items count in a folder: the sum of this over the names of its included
/// files and of its folders that are listed and not entered.
inline std::uint64_t itemHash(std::string_view name)
{
    return std::hash<std::string_view>()(name);
}

/// The folders that a crawl lists, which are watched from then on. Safe from every thread.
///
/// Nothing is watched before a stream takes these notes over. A crawl that gives up waiting for one
/// of its calls leaves a thread behind which may note more later: that is ignored.
class CrawlRecord
{
public:
    /// The service's own name for a folder it was told of.
    using Folder = std::uint32_t;

    CrawlRecord() = default;
    virtual ~CrawlRecord() = default;
    CrawlRecord(const CrawlRecord &) = delete;
    CrawlRecord &operator=(const CrawlRecord &) = delete;

    /// It is called with a root of the crawl. The stamp was taken before the folder was listed:
    /// whatever changes after that is told. It is unknown where the folder was not opened.
    virtual Folder enteredRoot(const std::string &path, const FolderStamp &stamp) = 0;
    /// It is called with each folder below; parent is what the call for the folder above returned.
    virtual Folder entered(Folder parent, std::string_view name, const FolderStamp &stamp) = 0;
    /// It is called with a folder that was listed and the sum over its items, unless that is 0.
    virtual void listed(Folder folder, std::uint64_t items) = 0;
    /// It is called with a folder that was recorded and could not be listed to its end, or with a
    /// root whose crawl ended early: the stream lists it and everything below itself.
    virtual void notListed(Folder folder) = 0;
    /// It is called with a folder that the crawl gave up before it could be recorded, by its name
    /// in the folder above: the stream looks at it itself, and at nothing else.
    virtual void notEntered(Folder parent, std::string_view name) = 0;
};

/// How much of what lies below the roots is watched at this moment.
struct FSEventStatus
{
    /// Folders whose changes the system tells.
    std::size_t watched = 0;
    /// All folders; the others are looked at from time to time.
    std::size_t folders = 0;
    /// The most watches that this stream allows itself.
    std::size_t budget = 0;
};

/// A stream's paths as the receiver is given them: a list, or else a printout of what came instead.
using FSEventPaths = std::variant<std::vector<std::string>, std::string>;

/// It is called on the stream's queue: the info pointer that the stream was made with, the number
/// of events, and the path, the flags and the ID of each.
using FSEventStreamCallback = std::function<void(
    void *info, std::size_t count, const FSEventPaths &paths,
    const std::vector<std::uint32_t> &flags, const std::vector<std::uint64_t> &ids)>;

/// Tells which folders below some roots have come, gone or changed. Each operation may be called
/// from any thread, the destructor once invalidate() has been called.
class FSEventStream
{
public:
    FSEventStream() = default;
    virtual ~FSEventStream() = default;
    FSEventStream(const FSEventStream &) = delete;
    FSEventStream &operator=(const FSEventStream &) = delete;

    /// Where the callback runs; a serial queue with a thread of its own, set before start().
    virtual void setDispatchQueue(TaskQueue &queue) = 0;
    /// Returns false when nothing can be watched.
    virtual bool start() = 0;
    /// No callback begins any more once this returns, unless the queue is in one; what was not
    /// delivered is dropped. Does not wait for the system. The item test may be asked a little
    /// longer.
    virtual void stop() = 0;
    /// Gives back what the stream holds, without waiting for it. It cannot be started again.
    virtual void invalidate() = 0;

    virtual std::uint64_t latestEventID() const = 0;
    virtual std::vector<std::string> pathsBeingWatched() const = 0;
    /// Lets what has happened so far be delivered now instead of after the latency, in the folders
    /// that are not watched too.
    virtual void flushAsync() = 0;
    /// Does what flushAsync() does and returns once the events are in the queue. Returns after two
    /// seconds where file systems do not answer. Must not be called on that queue.
    virtual void flushSync() = 0;
    /// Nothing at or below these paths is delivered from now on. False when they are too many.
    virtual bool setExclusionPaths(const std::vector<std::string> &paths) = 0;
    virtual std::string description() const = 0;

    virtual FSEventStatus status() const = 0;
};

/// Makes streams. Safe from every thread.
class FSEventStreamService
{
public:
    /// All ones: events from now on.
    static constexpr std::uint64_t SINCE_NOW = ~std::uint64_t{0};

    struct Request
    {
        FSEventStreamCallback callback;
        void *info = nullptr;
        /// Absolute paths of folders, which need not exist.
        std::vector<std::string> paths;
        std::uint64_t sinceWhen = SINCE_NOW;
        /// Seconds from the first change to the delivery.
        double latency = 0;
        std::uint32_t flags = 0;
        std::shared_ptr<const WatchFilter> items;
        /// What a crawl of these paths has recorded; null when nobody has crawled them.
        std::shared_ptr<CrawlRecord> recorded;
    };

    FSEventStreamService() = default;
    virtual ~FSEventStreamService() = default;
    FSEventStreamService(const FSEventStreamService &) = delete;
    FSEventStreamService &operator=(const FSEventStreamService &) = delete;

    /// The call has to come before a crawl begins. What happens after it is delivered by the stream
    /// that takes the notes over. Null when nothing can be watched.
    virtual std::shared_ptr<CrawlRecord> beginRecord() = 0;
    /// Returns null when there is nothing to watch, or when another stream has taken the notes
    /// over.
    virtual std::unique_ptr<FSEventStream> create(Request request) = 0;
};

} // namespace quillon
