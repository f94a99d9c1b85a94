#include "platform/linux/watching/FolderWatcher.h"

#include "platform/linux/disk/LongPath.h"

#include <algorithm>
#include <array>
#include <limits>
#include <system_error>
#include <thread>
#include <utility>

#include <fcntl.h>
#include <poll.h>
#include <sys/eventfd.h>

#include <malloc.h>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr auto RETRY_BUDGET = 1h;
/// No more flushes than these follow a requested one when folders never stop changing.
constexpr int MOST_FLUSHES = 10;

Descriptor openMountInfo(FolderWatcher::Kind kind)
{
    return kind == FolderWatcher::Kind::local
               ? openAt(AT_FDCWD, "/proc/self/mountinfo", O_RDONLY | O_CLOEXEC)
               : Descriptor();
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
    loop_ = std::make_unique<WatchLoop>(*queue_, items_, options_, kind_ == Kind::local,
                                        stream_.rootFlags, [this] { return goesOn(); });
    loop_->begin(stream_.roots, {stream_.crawled.get(), stream_.quietSince});
    publish();
    if (kind_ == Kind::local)
        endBeginning();
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
    const auto requested = requestedFlush();
    if (!requested && Clock::now() < std::min(deadline_, loop_->retryDue()))
        return;
    deadline_ = Clock::time_point::max();
    loop_->flush(requested ? WatchLoop::Extent::everything : WatchLoop::Extent::marked);
    // A requested flush reports what is found once the folders have stopped changing.
    for (int more = 0; requested && more < MOST_FLUSHES && loop_->hasDirt() && !stopping_; ++more)
        loop_->flush(WatchLoop::Extent::marked);
    publish();
    deliver();
    if (!requested)
        return;
    const MutexLock lock(mailMutex_);
    lastFlushed_ = *requested;
    flushed_.notifyAll();
}

std::optional<std::uint64_t> FolderWatcher::requestedFlush() const
{
    const MutexLock lock(mailMutex_);
    return lastFlushed_ < lastRequested_ ? std::optional(lastRequested_) : std::nullopt;
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
        loop_->folders().hasUnwatched())
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
            loop_->removeRoot(order.path);
        } else if (isBeginning_) {
            loop_->begin({order.path}, {stream_.crawled.get(), stream_.quietSince});
            deliver();
        } else {
            loop_->addRoot(order.path);
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
    passRemoteChanges();
    if (kind_ == Kind::local)
        reportShortage();
}

void FolderWatcher::passRemoteChanges()
{
    using What = RootOrder::What;
    for (const auto &[path, hasCome] : loop_->takeRemoteChanges())
        remoteOrNew()->order({hasCome ? What::hasCome : What::hasGone, path});
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
        loop_->wasRefused() || (queue_->isOpen() && tree.watches() >= loop_->folders().budget() &&
                                loop_->folders().hasUnwatched());
    if (isShort && options_.report && !std::exchange(isShortageReported_, true))
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
    const MutexLock lock(mailMutex_);
    hasEnded_ = true;
    flushed_.notifyAll();
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

std::uint64_t FolderWatcher::requestFlush()
{
    const MutexLock lock(mailMutex_);
    wake();
    return ++lastRequested_;
}

void FolderWatcher::flush(std::optional<std::chrono::milliseconds> patience)
{
    const std::uint64_t number = requestFlush();
    const auto end = patience ? Clock::now() + *patience : Clock::time_point::max();
    const MutexLock lock(mailMutex_);
    while (lastFlushed_ < number && !hasEnded_ && Clock::now() < end)
        flushed_.waitFor(mailMutex_, patience.value_or(1s));
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
