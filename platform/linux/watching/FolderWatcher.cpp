#include "platform/linux/watching/FolderWatcher.h"

#include "platform/linux/disk/LongPath.h"

#include <algorithm>
#include <array>
#include <limits>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>

#include <malloc.h>

// How the changes below some folders are noticed, without losing any.
//
// The kernel tells by inotify which names come and go in a folder that has a watch. Its events are
// not replayed: they may be late, doubled, in an order that names alone do not explain (an exchange
// of two folders), or lost altogether. An event only marks a name in a folder as worth a look; at
// the next flush, one latency after the first mark, the disk is read and compared with the tree of
// folders that stands here (FolderVerifier). Whatever was wrong before is right after that look,
// and a folder that lives shorter than the latency costs nothing.
//
// A look at a name asks for a watch on what stands there. The kernel gives the watch that a folder
// has already, so the same watch means the same folder; everything in it has been told by events of
// its own. Any other watch means another folder, which is entered: a watch on it first, its listing
// after that, and so on below. What changes after the watch raises an event and what changed before
// it is in the listing, so nothing falls in between. For the same reason a change is told to the
// receiver only when everything below it has its watches: what changes after the receiver's look is
// told again.
//
// Every look goes by a path, and a path leads elsewhere while a folder on it is moved away and
// back. So the events are read once more after the looks of a flush: where they tell that a folder
// was moved, whatever was looked at below it is looked at again by the next flush. Folders without
// a watch raise no events; there the stamps of the folders above are compared in the same way.
//
// A call that fails is no answer, unless it says that nothing stands at the path. What could not be
// asked stays as it was, and is asked again after a second, then after two, up to a minute
// (RetryList).
//
// A crawl that comes before takes the stamp of each folder, then lists it, and notes both
// (CrawlNotes). The watches follow when the crawl is over, so that nobody who waits for the crawl
// waits for them: a watch first, then another look at the stamp. Where the stamp is the same, and
// older than the crawl, nothing has happened in between; where it is not, the folder is listed
// again. The folders above the roots get their watches first, then the roots, then everything else.
//
// Folders that are no longer in their place leave the tree at once and give up their watches only
// at the end of the flush, when nobody else has turned up with the same watch. Until then a folder
// that has been moved within the tree takes its watches along.
//
// There are never enough watches. Half of what the user may have is left to other programs, and
// within that the folders nearest to the roots come first (WatchBudget). The others are known by
// their stamps: inode and time of the last change of status, which unlike the time of modification
// no program can set back. A sweep compares the stamps from time to time and lists the folders in
// which something has changed (FolderSweep); where a stamp is so young that another change might
// not show in it, the folder is listed the next time as well. The same comparison finds what was
// missed when the kernel's queue has overflown. Remote file systems, where the kernel knows nothing
// of what others change, are swept only, by a thread of their own.
//
// A root may come and go, as may the folders above it. Those have a watch each, of which only the
// name that leads to the root counts (WatchRoots). Mounts raise no events in the folders that they
// cover; the table of mounts tells of them, and the mount points are marked.
//
// The thread reads at most every 20 milliseconds while events keep coming: reading each at once
// takes a third of the time of the program that causes them. It sleeps without a time-out while
// nothing is marked and nothing has to be swept.

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr auto RETRY_BUDGET = 1h;
constexpr std::size_t LARGEST_BUDGET = 524'288;
/// At most this many flushes follow a requested one when folders never stop changing.
constexpr int MOST_FLUSHES = 10;

Descriptor openMountInfo(FolderWatcher::Kind kind)
{
    return kind == FolderWatcher::Kind::local
               ? openAt(AT_FDCWD, "/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)
               : Descriptor();
}

std::size_t budgetOf(const InotifyOptions &options, const InotifyQueue &queue)
{
    if (!queue.isOpen())
        return 0;
    return options.watchBudget.value_or(std::min(maxUserWatches() / 2, LARGEST_BUDGET));
}

/// Returns the milliseconds for poll(), rounded up, so that the time has come when poll() returns.
int millisecondsUntil(std::chrono::steady_clock::time_point time)
{
    if (time == std::chrono::steady_clock::time_point::max())
        return -1;
    const auto left =
        std::chrono::ceil<std::chrono::milliseconds>(time - std::chrono::steady_clock::now());
    return static_cast<int>(
        std::clamp<std::int64_t>(left.count(), 0, std::numeric_limits<int>::max()));
}

} // namespace

FolderWatcher::FolderWatcher(std::shared_ptr<const WatchFilter> items, InotifyOptions options,
                             Kind kind, Stream stream)
    : items_(std::move(items)),
      options_(std::move(options)),
      kind_(kind),
      wakeUp_(::eventfd(0, EFD_NONBLOCK | EFD_CLOEXEC)),
      mountInfo_(openMountInfo(kind)),
      stream_(std::move(stream))
{}

FolderWatcher::~FolderWatcher() = default;

bool FolderWatcher::start()
{
    // Without the descriptor, no other thread could wake or end this one.
    if (!wakeUp_)
        return false;
    try {
        std::thread([self = shared_from_this()] { self->run(); }).detach();
    } catch (const std::system_error &) {
        return false;
    }
    return true;
}

// The thread

void FolderWatcher::run()
{
    begin();
    while (wait())
        turn();
    end();
}

/// Sleeps until there is something to do. Returns false when the thread is to end.
bool FolderWatcher::wait()
{
    std::array<pollfd, 3> files{};
    files[0] = {Clock::now() >= readNext_ ? queue_->descriptor() : -1, POLLIN, 0};
    files[1] = {wakeUp_.get(), POLLIN, 0};
    files[2] = {mountInfo_.get(), POLLPRI, 0};
    if (stopping_)
        return false;
    ::poll(files.data(), files.size(), millisecondsUntil(nextWakeUp()));
    std::uint64_t ignored = 0;
    if (files[1].revents != 0 && ::read(wakeUp_.get(), &ignored, sizeof ignored) < 0)
        ignored = 0; // somebody's wake-up that was read along with another
    eventsWait_ = files[0].revents != 0;
    mountsChanged_ = files[2].revents != 0;
    return !stopping_;
}

FolderWatcher::Clock::time_point FolderWatcher::nextWakeUp() const
{
    Clock::time_point next = Clock::time_point::max();
    if (Clock::now() < readNext_)
        next = readNext_;
    return std::min({next, deadline_, loop_->retryDue(), loop_->sweepDue(), retryBudget_});
}

void FolderWatcher::turn()
{
    if (mountsChanged_)
        loop_->mountsChanged();
    if (eventsWait_) {
        loop_->drain();
        readNext_ = Clock::now() + options_.readingInterval;
    }
    followOrders();
    flushIfDue();
    sweepIfDue();
    if (deadline_ == Clock::time_point::max() && loop_->hasDirt())
        deadline_ = Clock::now() + stream_.latency;
    publish();
}

void FolderWatcher::begin()
{
    queue_ = std::make_unique<InotifyQueue>(kind_ == Kind::local);
    loop_ = std::make_unique<WatchLoop>(
        *queue_, items_, options_, budgetOf(options_, *queue_), kind_ == Kind::local,
        stream_.rootFlags,
        WatchLoop::Hooks{[this] { return goesOn(); },
                         [this](const std::string &path, bool hasCome) {
                             using What = RootOrder::What;
                             remoteOrNew()->order({hasCome ? What::hasCome : What::hasGone, path});
                         }});
    loop_->begin(stream_.roots, {stream_.crawled.get(), stream_.quietSince});
    if (kind_ == Kind::local)
        endBeginning();
    publish();
    deliver();
    if (loop_->hasDirt())
        deadline_ = Clock::now() + stream_.latency;
}

/// The notes of the crawl are not needed again. With 300,000 folders they take 10 MB.
void FolderWatcher::endBeginning()
{
    isBeginning_ = false;
    stream_.crawled.reset();
    stream_.quietSince.reset();
    if (const auto other = remote())
        other->order({RootOrder::What::isBegun});
    else
        ::malloc_trim(0);
}

void FolderWatcher::flushIfDue()
{
    const auto requested = flushes_.pending();
    if (!requested && Clock::now() < std::min(deadline_, loop_->retryDue()))
        return;
    deadline_ = Clock::time_point::max();
    loop_->flush(requested ? WatchLoop::Extent::everything : WatchLoop::Extent::marked);
    // A requested flush reports what is found once the folders have stopped changing.
    for (int more = 0; requested && more < MOST_FLUSHES && loop_->hasDirt() && !stopping_; ++more)
        loop_->flush(WatchLoop::Extent::marked);
    publish();
    deliver();
    if (requested)
        flushes_.done(*requested);
}

void FolderWatcher::sweepIfDue()
{
    const Clock::time_point now = Clock::now();
    if (now >= retryBudget_) {
        loop_->retryBudget();
        retryBudget_ = Clock::time_point::max();
        deliver();
    }
    if (now >= loop_->sweepDue() && loop_->sweep())
        deliver();
    if (retryBudget_ == Clock::time_point::max() && kind_ == Kind::local &&
        !loop_->folders().unwatched().empty())
        retryBudget_ = now + RETRY_BUDGET;
}

void FolderWatcher::followOrders()
{
    std::vector<RootOrder> orders;
    {
        const MutexLock lock(mailMutex_);
        orders.swap(orders_);
    }
    for (const RootOrder &order : orders) {
        if (order.what == RootOrder::What::isBegun) {
            endBeginning();
        } else if (order.what == RootOrder::What::hasGone) {
            loop_->roots().remove(order.path);
        } else if (isBeginning_) {
            loop_->begin({order.path}, {stream_.crawled.get(), stream_.quietSince});
            deliver();
        } else {
            loop_->roots().add(order.path);
            loop_->suspectRoots();
        }
    }
}

void FolderWatcher::deliver()
{
    if (options_.beforeDelivery)
        options_.beforeDelivery();
    if (!stopping_)
        stream_.delivery->deliver(loop_->takeChanges());
}

/// During long work events are still read, since the kernel's queue would fill otherwise.
bool FolderWatcher::goesOn()
{
    if (Clock::now() >= readNext_) {
        loop_->drain();
        readNext_ = Clock::now() + options_.readingInterval;
        publishCounts();
    }
    return !stopping_;
}

void FolderWatcher::publish()
{
    publishCounts();
    bytes_ = loop_->folders().bytes();
    if (kind_ == Kind::local)
        reportShortage();
}

void FolderWatcher::publishCounts()
{
    const WatchedFolders &folders = loop_->folders();
    watched_ = folders.tree().watches();
    folders_ = folders.tree().folders();
    budget_ = folders.budget();
}

void FolderWatcher::reportShortage()
{
    const WatchTree &tree = loop_->folders().tree();
    const bool isShort =
        loop_->takeRefused() || (queue_->isOpen() && tree.watches() >= loop_->folders().budget() &&
                                 !loop_->folders().unwatched().empty());
    if (isShort && options_.report)
        options_.report("watching " + std::to_string(tree.watches()) + " of " +
                        std::to_string(tree.folders()) +
                        " folders, the others are looked at from time to time; "
                        "fs.inotify.max_user_watches is " +
                        std::to_string(maxUserWatches()));
}

/// Closing the queue takes time, so this thread does it and no other has to wait.
void FolderWatcher::end()
{
    loop_.reset();
    queue_.reset();
    flushes_.end();
}

// From other threads

void FolderWatcher::stop()
{
    stopping_ = true;
    wake();
    if (const auto other = remote())
        other->stop();
}

void FolderWatcher::wake() const
{
    const std::uint64_t one = 1;
    if (::write(wakeUp_.get(), &one, sizeof one) < 0)
        return; // it is about to wake up anyway
}

FlushRequests::Number FolderWatcher::requestFlush()
{
    const FlushRequests::Number number = flushes_.add();
    wake();
    return number;
}

std::shared_ptr<FolderWatcher> FolderWatcher::remote() const
{
    const MutexLock lock(mailMutex_);
    return remote_;
}

std::shared_ptr<FolderWatcher> FolderWatcher::remoteOrNew()
{
    if (auto other = remote())
        return other;
    Stream stream = stream_;
    // The other watcher watches only what this one hands over.
    stream.roots.clear();
    auto made = std::make_shared<FolderWatcher>(items_, options_, Kind::remote, std::move(stream));
    made->start();
    {
        const MutexLock lock(mailMutex_);
        remote_ = made;
    }
    if (!isBeginning_)
        made->order({RootOrder::What::isBegun});
    if (stopping_)
        made->stop();
    return made;
}

void FolderWatcher::order(RootOrder order)
{
    {
        const MutexLock lock(mailMutex_);
        orders_.push_back(std::move(order));
    }
    wake();
}

FSEventStatus FolderWatcher::status() const
{
    FSEventStatus status{watched_, folders_, budget_};
    if (const auto other = remote())
        status.folders += other->status().folders;
    return status;
}

} // namespace quillon
