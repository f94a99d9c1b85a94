#include "platform/linux/watching/InotifyEventService.h"

#include "base/PathText.h"
#include "platform/linux/watching/EventDelivery.h"
#include "platform/linux/watching/FolderWatcher.h"

#include <chrono>
#include <iostream>
#include <utility>
#include <vector>

// How the changes below some folders are noticed, without losing any.
//
// The kernel reports by inotify which names come and go in a folder that has a watch. Its events
// are not replayed: they may be late, doubled, in an order that names alone do not explain (an
// exchange of two folders), or lost altogether. An event only raises the question what is at a name
// in a folder (OpenQuestions). At the next flush, one latency after the first question, the disk is
// compared with the tree of folders in memory (FolderVerifier). Whatever was wrong before is right
// after that, and a folder that lives shorter than the latency costs nothing.
//
// A check of a name asks for a watch on what is there. The kernel returns the watch that a folder
// already has, so the same watch means the same folder, and events of their own have reported
// everything in it. Any other watch means another folder, which is entered: a watch on it first,
// its listing after that, and so on below. What changes after the watch raises an event, and what
// changed before it is in the listing, so nothing falls in between. For the same reason the
// receiver hears of a change only when everything below it has its watches: what changes after the
// receiver has read the disk is reported again.
//
// Every question goes by a path, and a path leads elsewhere while a folder on it is moved away and
// back. So the events are read once more after the checks of a flush. Where they report that a
// folder was moved, the next flush asks again everything that was asked below it. Folders without a
// watch raise no events; there the stamps of the folders above are compared in the same way.
//
// A call that fails is no answer, unless it says that nothing is at the path. What could not be
// asked stays as it was, and the question is asked again after a second, then after two, up to a
// minute.
//
// A crawl that comes before takes the stamp of each folder, then lists it, and notes both
// (CrawlNotes). The watches follow when the crawl is over, so that nobody who waits for the crawl
// waits for them: a watch first, then another look at the stamp. If the stamp is the same, and
// older than the crawl, nothing has happened in between; otherwise the folder is listed again. The
// folders above the roots get their watches first, then the roots, then everything else
// (WatchArming).
//
// Folders that are no longer in their place leave the tree at once and give up their watches only
// at the end of the flush, when no other folder was found with the same watch. Until then a folder
// that was moved within the tree takes its watches along.
//
// There are never enough watches. Half of what the user may have is left to other programs, and
// within that the folders nearest to the roots come first. The others are known by their stamps:
// inode and time of the last change of status, which unlike the time of modification no program can
// set back. A sweep compares the stamps from time to time and lists the folders in which something
// has changed (FolderSweep). Where a stamp is so young that another change might not show in it,
// the folder is listed the next time as well. The same comparison finds what was missed when the
// kernel's queue has overflowed. Remote file systems, where the kernel knows nothing of what others
// change, are only swept, by a thread of their own.
//
// A root may come and go, as may the folders above it. Those have a watch each, of which only the
// name that leads to the root counts (WatchRoots). Mounts raise no events in the folders that they
// cover; the table of mounts reports them, and the names of the mount points are checked.
//
// The thread reads at most every 20 milliseconds while events keep coming: reading each at once
// takes a third of the time of the program that causes them. It sleeps without a time-out while
// there is no question and nothing to sweep.

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr auto REMOTE_PATIENCE = 2000ms;
constexpr std::size_t MOST_EXCLUSIONS = 8;
constexpr std::uint32_t WATCH_ROOT = 0x4;
constexpr std::uint32_t ROOT_CHANGED = 0x20;

/// A stream over a watcher.
class InotifyEventStream final : public FSEventStream
{
public:
    InotifyEventStream(std::shared_ptr<FolderWatcher> watcher, std::vector<std::string> roots,
                       std::shared_ptr<EventDelivery> delivery)
        : watcher_(std::move(watcher)), roots_(std::move(roots)), delivery_(std::move(delivery))
    {}
    ~InotifyEventStream() override { InotifyEventStream::stop(); }

    void setDispatchQueue(TaskQueue &queue) override { delivery_->setQueue(queue); }
    bool start() override;
    void stop() override;
    void invalidate() override { stop(); }
    std::uint64_t latestEventID() const override { return delivery_->latestID(); }
    std::vector<std::string> pathsBeingWatched() const override { return roots_; }
    void flushAsync() override;
    void flushSync() override;
    bool setExclusionPaths(const std::vector<std::string> &paths) override;
    std::string description() const override;
    FSEventStatus status() const override { return watcher_->status(); }

private:
    enum class State
    {
        made,
        started,
        stopped,
    };

    const std::shared_ptr<FolderWatcher> watcher_;
    const std::vector<std::string> roots_;
    const std::shared_ptr<EventDelivery> delivery_;
    std::atomic<State> state_ = State::made;
};

bool InotifyEventStream::start()
{
    State expected = State::made;
    if (!delivery_->hasQueue() || !state_.compare_exchange_strong(expected, State::started))
        return false;
    if (watcher_->start())
        return true;
    State refused = State::started;
    state_.compare_exchange_strong(refused, State::made);
    return false;
}

void InotifyEventStream::stop()
{
    state_ = State::stopped;
    delivery_->stop();
    watcher_->stop();
}

void InotifyEventStream::flushAsync()
{
    if (state_ != State::started)
        return;
    watcher_->requestFlush();
    if (const auto remote = watcher_->remote())
        remote->requestFlush();
}

void InotifyEventStream::flushSync()
{
    if (state_ != State::started)
        return;
    watcher_->flush(std::nullopt);
    if (const auto remote = watcher_->remote())
        remote->flush(REMOTE_PATIENCE);
}

bool InotifyEventStream::setExclusionPaths(const std::vector<std::string> &paths)
{
    if (paths.size() > MOST_EXCLUSIONS)
        return false;
    delivery_->exclude(paths);
    return true;
}

std::string InotifyEventStream::description() const
{
    std::string text = "inotify stream";
    for (const std::string &root : roots_)
        text += " " + root;
    const FSEventStatus now = status();
    return text + ", watching " + std::to_string(now.watched) + " of " +
           std::to_string(now.folders) + " folders";
}

} // namespace

InotifyEventService::InotifyEventService(InotifyOptions options)
    : options_(std::move(options)), lastID_(std::make_shared<std::atomic<std::uint64_t>>(0))
{
    // The shortage lasts, so it is reported only once.
    const auto report = options_.report ? options_.report : [](const std::string &line) {
        std::cerr << "quillon: " + line + "\n";
    };
    options_.report =
        [report, isSaid = std::make_shared<std::atomic<bool>>(false)](const std::string &line) {
            if (!isSaid->exchange(true))
                report(line);
        };
}

std::shared_ptr<CrawlRecord> InotifyEventService::beginRecord()
{
    return std::make_shared<CrawlNotes>(wallClockOf(options_)());
}

std::unique_ptr<FSEventStream> InotifyEventService::create(Request request)
{
    if (request.paths.empty())
        return nullptr;
    FolderWatcher::Stream stream;
    for (std::string &path : request.paths)
        stream.roots.emplace_back(withoutTrailingSlashes(path));
    stream.latency = std::chrono::duration_cast<std::chrono::steady_clock::duration>(
        std::chrono::duration<double>(request.latency));
    stream.rootFlags = (request.flags & WATCH_ROOT) != 0 ? ROOT_CHANGED : 0;
    stream.delivery =
        std::make_shared<EventDelivery>(std::move(request.callback), request.info, lastID_);
    if (const auto notes = std::dynamic_pointer_cast<CrawlNotes>(request.recorded)) {
        stream.crawled = notes->take();
        if (!stream.crawled)
            return nullptr;
    } else {
        stream.quietSince = wallClockOf(options_)();
    }
    auto watcher = std::make_shared<FolderWatcher>(std::move(request.items), options_,
                                                   FolderWatcher::Kind::local, stream);
    return std::make_unique<InotifyEventStream>(std::move(watcher), stream.roots, stream.delivery);
}

} // namespace quillon
