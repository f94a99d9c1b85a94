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

/// Answers what the service asks about the items below the watched folders. Safe from every thread.
/// The answers stay the same as long as the watch lasts, except for isIndexed().
class WatchFilter
{
public:
    enum class Folder
    {
        /// Neither the folder nor anything below it matters.
        skipped,
        /// The folder's coming and going matters, its content does not.
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

/// Returns a number for the name of an item. The sum over the names of a folder's included files,
/// and of its folders that are listed and not entered, changes with the items that count in the
/// folder.
inline std::uint64_t itemHash(std::string_view name)
{
    return std::hash<std::string_view>()(name);
}

/// The folders that a crawl lists, which are watched from then on. Safe from every thread.
///
/// Nothing is watched before a stream takes the record over. A crawl that stops waiting for one of
/// its calls leaves a thread behind, which may record more later. What it records is ignored.
class CrawlRecord
{
public:
    /// The service's own number for a folder that was recorded.
    using Folder = std::uint32_t;

    CrawlRecord() = default;
    virtual ~CrawlRecord() = default;
    CrawlRecord(const CrawlRecord &) = delete;
    CrawlRecord &operator=(const CrawlRecord &) = delete;

    /// It is called with a root of the crawl. The stamp was taken before the folder was listed, and
    /// whatever changes after that is reported. The stamp is unknown when the folder was not
    /// opened.
    virtual Folder enteredRoot(const std::string &path, const FolderStamp &stamp) = 0;
    /// It is called with each folder below a root. The parent is what the call for the folder above
    /// returned.
    virtual Folder entered(Folder parent, std::string_view name, const FolderStamp &stamp) = 0;
    /// It is called with a folder that was listed and the sum over its items, unless that is 0.
    virtual void listed(Folder folder, std::uint64_t items) = 0;
    /// It is called with a folder that was recorded and could not be listed to its end, or with a
    /// root whose crawl ended early. The stream itself then lists that folder and everything below
    /// it.
    virtual void notListed(Folder folder) = 0;
    /// It is called with a folder that the crawl gave up before it could be recorded, by its name
    /// in the folder above. The stream itself then examines that folder, and nothing else.
    virtual void notEntered(Folder parent, std::string_view name) = 0;
};

/// How much of what lies below the roots is watched at this moment.
struct FSEventStatus
{
    /// The number of folders whose changes the system reports.
    std::size_t watched = 0;
    /// The number of all folders. Those that are not watched are checked from time to time.
    std::size_t folders = 0;
    /// The most watches that this stream allows itself.
    std::size_t budget = 0;
};

/// A stream's paths as the receiver gets them: a list, or a printout of what came in place of a
/// list.
using FSEventPaths = std::variant<std::vector<std::string>, std::string>;

/// It is called on the stream's queue with the info pointer that the stream was made with, the
/// number of events, and the path, the flags and the ID of each event.
using FSEventStreamCallback = std::function<void(
    void *info, std::size_t count, const FSEventPaths &paths,
    const std::vector<std::uint32_t> &flags, const std::vector<std::uint64_t> &ids)>;

/// Reports which folders below some roots have come, gone or changed. Each operation may be called
/// from any thread, and the destructor once invalidate() has been called.
class FSEventStream
{
public:
    FSEventStream() = default;
    virtual ~FSEventStream() = default;
    FSEventStream(const FSEventStream &) = delete;
    FSEventStream &operator=(const FSEventStream &) = delete;

    /// Sets the queue on which the callback runs. It is a serial queue with a thread of its own,
    /// and is set before start().
    virtual void setDispatchQueue(TaskQueue &queue) = 0;
    /// Returns false when nothing can be watched.
    virtual bool start() = 0;
    /// Stops the stream without waiting for the system. After this call no callback begins, unless
    /// the queue is already in one, and what was not delivered is dropped. The item filter may
    /// still be asked for a short time.
    virtual void stop() = 0;
    /// Releases what the stream holds, without waiting for the system. The stream cannot be started
    /// again.
    virtual void invalidate() = 0;

    virtual std::uint64_t latestEventID() const = 0;
    virtual std::vector<std::string> pathsBeingWatched() const = 0;
    /// Delivers what has happened so far at once instead of after the latency, also in the folders
    /// that are not watched.
    virtual void flushAsync() = 0;
    /// Does what flushAsync() does and returns once the events are in the queue, or after two
    /// seconds if file systems do not answer. It must not be called on that queue.
    virtual void flushSync() = 0;
    /// From now on, nothing at or below these paths is delivered. Returns false when there are too
    /// many paths.
    virtual bool setExclusionPaths(const std::vector<std::string> &paths) = 0;
    virtual std::string description() const = 0;

    virtual FSEventStatus status() const = 0;
};

/// Makes streams. Safe from every thread.
class FSEventStreamService
{
public:
    /// All bits are set, which stands for events from now on.
    static constexpr std::uint64_t SINCE_NOW = ~std::uint64_t{0};

    struct Request
    {
        FSEventStreamCallback callback;
        void *info = nullptr;
        /// The absolute paths of the folders, which need not exist.
        std::vector<std::string> paths;
        std::uint64_t sinceWhen = SINCE_NOW;
        /// The time from the first change to the delivery, in seconds.
        double latency = 0;
        std::uint32_t flags = 0;
        std::shared_ptr<const WatchFilter> items;
        /// The record of a crawl of these paths; null when nobody has crawled them.
        std::shared_ptr<CrawlRecord> recorded;
    };

    FSEventStreamService() = default;
    virtual ~FSEventStreamService() = default;
    FSEventStreamService(const FSEventStreamService &) = delete;
    FSEventStreamService &operator=(const FSEventStreamService &) = delete;

    /// Returns a record for a crawl that has not begun yet. The stream that takes the record over
    /// delivers what happens after this call. Returns null when nothing can be watched.
    virtual std::shared_ptr<CrawlRecord> beginRecord() = 0;
    /// Returns null when there is nothing to watch, or when another stream has taken the record
    /// over.
    virtual std::unique_ptr<FSEventStream> create(Request request) = 0;
};

} // namespace quillon
