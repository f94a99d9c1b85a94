#include "platform/linux/watching/WatchLoop.h"

#include "base/PathText.h"
#include "platform/FSEventStream.h"
#include "platform/linux/disk/FileSystemKind.h"
#include "platform/linux/watching/WatchBudget.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <utility>

namespace quillon {

namespace {

constexpr std::uint32_t EVENTS_LOST = 0x1 | 0x4; // must scan subfolders, kernel dropped
constexpr std::int64_t NANOSECONDS = 1'000'000'000;
/// Stamps advance with the kernel's tick, so a change may be later than its stamp.
constexpr std::int64_t SLACK = 2 * NANOSECONDS;
constexpr std::int64_t STEP = NANOSECONDS;

std::int64_t readClock(clockid_t clock)
{
    timespec time = {};
    ::clock_gettime(clock, &time);
    return time.tv_sec * NANOSECONDS + time.tv_nsec;
}

std::int64_t bootClock()
{
    return readClock(CLOCK_BOOTTIME);
}

/// Determines by their stamps whether folders without a watch have moved since they were entered.
/// Asks for each stamp once.
class StampCheck
{
public:
    explicit StampCheck(const WatchedFolders &folders) : folders_(folders) {}

    /// Returns whether the folder itself or one above it may have moved.
    bool hasMovedAbove(WatchTree::Id id)
    {
        for (; id != WatchTree::NONE; id = folders_.tree().parent(id))
            if (hasMoved(id))
                return true;
        return false;
    }

private:
    bool hasMoved(WatchTree::Id id)
    {
        const auto *known = folders_.unwatched(id);
        if (known == nullptr || known->isClosed)
            return false;
        const auto [answer, isNew] = answers_.try_emplace(id, false);
        if (isNew) {
            const FolderProbe now =
                probeFolder(folders_.tree().path(id), folders_.tree().isRoot(id));
            answer->second = !known->isTrusted || known->stamp != now.stamp;
        }
        return answer->second;
    }

    const WatchedFolders &folders_;
    std::unordered_map<WatchTree::Id, bool> answers_;
};

std::optional<MountTable> mountTableOf(const InotifyOptions &options, bool knowsMounts)
{
    if (!knowsMounts)
        return std::nullopt;
    return MountTable(options.isRemote ? options.isRemote : isRemoteFileSystem);
}

} // namespace

WallClock wallClockOf(const InotifyOptions &options)
{
    return options.wallClock ? options.wallClock : [] { return readClock(CLOCK_REALTIME); };
}

WatchLoop::WatchLoop(InotifyQueue &queue, std::shared_ptr<const WatchFilter> items,
                     const InotifyOptions &options, std::size_t budget, bool knowsMounts,
                     std::uint32_t rootFlags, Hooks hooks)
    : queue_(queue),
      items_(std::move(items)),
      wallClock_(wallClockOf(options)),
      queueLimit_(options.queueLimit),
      fullBudget_(budget),
      hooks_(std::move(hooks)),
      changes_(*items_),
      mounts_(mountTableOf(options, knowsMounts)),
      folders_(queue_, budget, wallClock_),
      verifier_(folders_, *items_, changes_, retries_, mounts(),
                {options.beforeListing, hooks_.goesOn,
                 [this](const std::string &path) { hooks_.onRemote(path, true); }}),
      roots_(queue_, folders_, *items_, changes_, retries_, mounts()),
      sweep_(folders_, verifier_,
             {options.sweepInterval, knowsMounts
                                         ? FolderSweep::Clock::duration(std::chrono::hours(24))
                                         : FolderSweep::Clock::duration(std::chrono::minutes(10))}),
      rootFlags_(rootFlags),
      readAt_(wallClock_()),
      readAtBoot_(bootClock())
{
    folders_.onClosedDropped = [this](const std::string &path) { hooks_.onRemote(path, false); };
    folders_.isWantedElsewhere = [this](int watch) { return roots_.owns(watch); };
    roots_.onRemote = hooks_.onRemote;
}

// Events

void WatchLoop::drain()
{
    if (!queue_.isOpen())
        return;
    const std::int64_t now = wallClock_();
    const std::int64_t nowBoot = bootClock();
    std::size_t count = 0;
    queue_.read([&](const InotifyQueue::Event &event) {
        if (queueLimit_ && ++count > *queueLimit_)
            overflow_ = true;
        else
            note(event);
    });
    if (overflow_)
        return; // what was lost came after the last reading that was complete
    readAt_ = now;
    readAtBoot_ = nowBoot;
}

void WatchLoop::note(const InotifyQueue::Event &event)
{
    if (event.watch < 0) {
        overflow_ = true;
        return;
    }
    if (roots_.note(event))
        rootsSuspect_ = true;
    if (!event.isOwn && !event.isFolder && !items_->includesFile(event.name))
        return;
    const auto owners = folders_.tree().ownersOf(event.watch);
    if (event.isEnd)
        folders_.watchEnded(event.watch);
    for (const Id owner : owners) {
        if (!folders_.tree().isLive(owner))
            continue;
        if (event.isOwn)
            noteOwn(owner);
        else if (matters(owner, event))
            mark(owner, event.name);
    }
}

void WatchLoop::noteOwn(Id id)
{
    const WatchTree &tree = folders_.tree();
    if (tree.isRoot(id))
        rootsSuspect_ = true;
    else
        mark(tree.parent(id), tree.name(id));
}

bool WatchLoop::matters(Id folder, const InotifyQueue::Event &event) const
{
    if (!event.isFolder)
        return true;
    if (const auto marked = dirty_.find(folder);
        marked != dirty_.end() && marked->second.contains(event.name))
        return false;
    return items_->folder(folders_.tree().path(folder, event.name)) != WatchFilter::Folder::skipped;
}

void WatchLoop::mark(Id folder, std::string_view name)
{
    auto &names = dirty_[folder];
    if (!names.contains(name))
        names.emplace(name);
}

void WatchLoop::mountsChanged()
{
    if (!mounts_)
        return;
    const auto changed = mounts_->reload();
    // Every flush reads the table.
    if (!changed)
        return retries_.addRoots();
    for (const std::string &point : *changed) {
        if (roots_.areConcernedByMount(point))
            rootsSuspect_ = true;
        for (const auto &[root, node] : roots_.entered()) {
            std::error_code error;
            const std::string real = std::filesystem::canonical(root, error);
            if (!error && point != real && isAtOrBelow(point, real))
                markMountPoint(node, point.substr(real == "/" ? 1 : real.size() + 1));
        }
    }
}

void WatchLoop::markMountPoint(Id root, std::string_view below)
{
    Id folder = root;
    for (;;) {
        const std::size_t slash = below.find('/');
        const std::string_view name = below.substr(0, slash);
        if (slash == std::string_view::npos) {
            mark(folder, name);
            return;
        }
        folder = folders_.tree().find(folder, name);
        if (folder == WatchTree::NONE)
            return;
        below.remove_prefix(slash + 1);
    }
}

bool WatchLoop::hasDirt() const
{
    return overflow_ || rootsSuspect_ || !dirty_.empty() || !unlisted_.empty() ||
           !notListed_.empty();
}

// Flush

void WatchLoop::begin(const std::vector<std::string> &roots, const Beginning &beginning)
{
    mountsChanged();
    for (const std::string &path : roots)
        roots_.add(path);
    if (beginning.crawled != nullptr)
        enterCrawled(roots, *beginning.crawled);
    roots_.check(verifier_, {.flags = rootFlags_, .quietSince = beginning.quietSince});
    fitWatchesToBudget(folders_, verifier_, [this] { drain(); });
    finish();
}

/// The folders above a root get their watches before the root, and all roots before any folder
/// below.
void WatchLoop::enterCrawled(const std::vector<std::string> &roots, const CrawledTree &crawled)
{
    std::vector<std::string> local;
    for (const std::string &path : roots)
        if (roots_.isRemote(path) == std::optional(false)) {
            roots_.guard(path);
            local.push_back(path);
        }
    folders_.setCrawledSince(crawled.beganAt());
    const auto enter = [this](Id parent, std::string_view name, const CrawledFolder &folder) {
        if (parent != WatchTree::NONE)
            return verifier_.enterCrawled(parent, name, folder);
        const Id root = verifier_.enterCrawledRoot(std::string(name), folder);
        roots_.setFolder(name, root);
        return root;
    };
    crawled.visit(local, enter, [this](Id folder, const std::string &name) {
        if (name.empty())
            notListed_.push_back(folder);
        else
            mark(folder, name);
    });
    verifier_.armListed();
    checkArming();
}

void WatchLoop::flush(Extent extent)
{
    const bool looksEverywhere = extent == Extent::everything;
    drain();
    takeRetries(looksEverywhere ? Clock::time_point::max() : Clock::now());
    // A folder that is moved takes the mounts below it along, which the kernel does not report.
    mountsChanged();
    // What is marked from here on came after the first check, and may explain a check that was
    // wrong.
    const Dirt dirty = std::exchange(dirty_, {});
    const auto unlisted = std::exchange(unlisted_, {});
    const bool areRootsSuspect = std::exchange(rootsSuspect_, false);
    const bool hadLoss = std::exchange(overflow_, false);
    const bool wasStepped = hadLoss && wasClockStepped();
    const std::int64_t lostSince = readAt_ - SLACK;
    if (hadLoss) {
        readAt_ = wallClock_();
        readAtBoot_ = bootClock();
    }
    if (areRootsSuspect || hadLoss || looksEverywhere)
        roots_.check(verifier_, {.flags = rootFlags_, .isSuspect = areRootsSuspect || hadLoss});
    if (hadLoss)
        sweep_.afterLoss(wasStepped ? std::nullopt : std::optional(lostSince), EVENTS_LOST,
                         hooks_.goesOn);
    for (const Id id : std::exchange(notListed_, {}))
        listAnew(id);
    for (const Id id : unlisted)
        if (folders_.tree().isLive(id) && hooks_.goesOn())
            verifier_.reconcile(id);
    verifyDirt(dirty);
    if (looksEverywhere)
        sweep_.lookAtAll();
    finish();
    retries_.forgetTaken();
}

void WatchLoop::takeRetries(Clock::time_point now)
{
    for (const RetryList::Question &question : retries_.take(now))
        lookAgain(question);
}

void WatchLoop::lookAgain(const FolderVerifier::Look &look)
{
    if (look.folder == WatchTree::NONE)
        rootsSuspect_ = true;
    else if (!folders_.tree().isLive(look.folder))
        return; // the folder above it was checked since
    else if (look.name.empty())
        unlisted_.insert(look.folder);
    else
        mark(look.folder, look.name);
}

bool WatchLoop::wasClockStepped() const
{
    const std::int64_t drift = (wallClock_() - readAt_) - (bootClock() - readAtBoot_);
    return std::abs(drift) > STEP;
}

void WatchLoop::verifyDirt(const Dirt &dirty)
{
    const WatchTree &tree = folders_.tree();
    std::vector<Id> marked;
    marked.reserve(dirty.size());
    for (const auto &[id, names] : dirty)
        marked.push_back(id);
    std::ranges::sort(marked, {}, [&](Id id) { return tree.depth(id); });
    for (const Id id : marked)
        for (const std::string &name : dirty.at(id))
            if (tree.isLive(id) && hooks_.goesOn())
                verifier_.verify(id, name);
}

void WatchLoop::listAnew(Id id)
{
    WatchTree &tree = folders_.tree();
    if (!tree.isLive(id))
        return;
    while (tree.firstChild(id) != WatchTree::NONE)
        folders_.drop(tree.firstChild(id));
    verifier_.explore(id);
    changes_.add(tree.path(id), ChangeLog::Found::folder);
}

void WatchLoop::finish()
{
    folders_.releaseDropped();
    if (folders_.takeRefused()) {
        // Other programs need watches too, so some of ours are released, those farthest down.
        wasRefused_ = true;
        folders_.setBudget(folders_.budget() - folders_.budget() / GIVEN_BACK);
        fitWatchesToBudget(folders_, verifier_, [this] { drain(); });
        folders_.releaseDropped();
    }
    checkLooks();
}

// Every look goes by a path. Where a folder on the way was somewhere else at that moment, or
// another one in its place, the look saw something else. Moving a folder raises an event, or
// changes its stamp where it has no watch, so that reading the events once more after the looks
// tells which of them to distrust. The same goes for folders of which nobody knows at the moment
// whether another one stands in their place.

void WatchLoop::checkLooks()
{
    drain();
    const std::vector<FolderVerifier::Look> looks = verifier_.takeLooks();
    if (looks.empty())
        return;
    const bool distrustsAll = overflow_ || rootsSuspect_;
    const std::unordered_set<Id> moved = unsettled();
    const std::unordered_set<Id> unknown = unanswered();
    if (!distrustsAll && moved.empty() && unknown.empty() && folders_.unwatched().empty())
        return;
    StampCheck stamps(folders_);
    for (const FolderVerifier::Look &look : looks) {
        if (!folders_.tree().isLive(look.folder))
            continue; // the check of the folder above stands for it
        if (distrustsAll || isBelowAny(look.folder, moved))
            lookAgain(look);
        else if (isBelowAny(look.folder, unknown) || stamps.hasMovedAbove(look.folder))
            retries_.add(look.folder, look.name);
    }
}

/// Verifies what was checked once the folders of a crawl have their watches. Each watch was
/// requested by a path, so every folder counts as checked.
void WatchLoop::checkArming()
{
    drain();
    const bool distrustsAll = overflow_ || rootsSuspect_;
    const std::unordered_set<Id> moved = unsettled();
    if (!distrustsAll && moved.empty())
        return;
    const WatchTree &tree = folders_.tree();
    for (Id id = 1; id < tree.idLimit(); ++id)
        if (tree.isLive(id) && (distrustsAll || isBelowAny(id, moved)))
            unlisted_.insert(id);
}

/// Returns the folders to which something has happened since they were checked.
std::unordered_set<WatchTree::Id> WatchLoop::unsettled() const
{
    std::unordered_set<Id> found;
    for (const auto &[folder, names] : dirty_)
        for (const std::string &name : names)
            if (const Id id = folders_.tree().find(folder, name); id != WatchTree::NONE)
                found.insert(id);
    return found;
}

/// Returns the watched folders for which the disk did not say whether they are still in their
/// place. For the other folders their stamps say that.
std::unordered_set<WatchTree::Id> WatchLoop::unanswered() const
{
    std::unordered_set<Id> found;
    for (const auto &[folder, name] : retries_.waiting()) {
        const Id id =
            folder == WatchTree::NONE ? roots_.folder(name) : folders_.tree().find(folder, name);
        if (id != WatchTree::NONE && folders_.unwatched(id) == nullptr)
            found.insert(id);
    }
    return found;
}

bool WatchLoop::isBelowAny(Id id, const std::unordered_set<Id> &folders) const
{
    if (folders.empty())
        return false;
    for (; id != WatchTree::NONE; id = folders_.tree().parent(id))
        if (folders.contains(id))
            return true;
    return false;
}

bool WatchLoop::sweep()
{
    // The table has to be read here too, since no event reports that a folder was moved with its
    // mounts.
    mountsChanged();
    if (!queue_.isOpen())
        roots_.check(verifier_, {.flags = rootFlags_});
    const bool isOver = sweep_.goOn(Clock::now());
    finish();
    return isOver;
}

void WatchLoop::retryBudget()
{
    mountsChanged();
    folders_.setBudget(fullBudget_);
    fitWatchesToBudget(folders_, verifier_, [this] { drain(); });
    finish();
}

} // namespace quillon
