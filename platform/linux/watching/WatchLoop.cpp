#include "platform/linux/watching/WatchLoop.h"

#include "platform/FSEventStream.h"
#include "platform/linux/disk/FileSystemKind.h"

#include <algorithm>
#include <cstdlib>
#include <ctime>
#include <utility>

namespace quillon {

namespace {

constexpr std::uint32_t EVENTS_LOST = 0x1 | 0x4; // must scan subfolders, kernel dropped
constexpr std::int64_t NANOSECONDS = 1'000'000'000;
/// Stamps advance with the kernel's tick, so a change may be later than its stamp.
constexpr std::int64_t SLACK = 2 * NANOSECONDS;
constexpr std::int64_t STEP = NANOSECONDS;
constexpr std::size_t LARGEST_BUDGET = 524'288;

std::int64_t readClock(clockid_t clock)
{
    timespec time = {};
    ::clock_gettime(clock, &time);
    return time.tv_sec * NANOSECONDS + time.tv_nsec;
}

std::optional<MountTable> mountTableOf(const InotifyOptions &options, bool knowsMounts)
{
    if (!knowsMounts)
        return std::nullopt;
    return MountTable(options.isRemote ? options.isRemote : isRemoteFileSystem);
}

std::size_t budgetOf(const InotifyOptions &options, const InotifyQueue &queue)
{
    if (!queue.isOpen())
        return 0;
    return options.watchBudget.value_or(std::min(maxUserWatches() / 2, LARGEST_BUDGET));
}

} // namespace

WallClock wallClockOf(const InotifyOptions &options)
{
    return options.wallClock ? options.wallClock : [] { return readClock(CLOCK_REALTIME); };
}

WatchLoop::WatchLoop(InotifyQueue &queue, std::shared_ptr<const WatchFilter> items,
                     const InotifyOptions &options, bool knowsMounts, std::uint32_t rootFlags,
                     std::function<bool()> goesOn)
    : queue_(queue),
      items_(std::move(items)),
      wallClock_(wallClockOf(options)),
      queueLimit_(options.queueLimit),
      fullBudget_(budgetOf(options, queue)),
      goesOn_(std::move(goesOn)),
      changes_(*items_),
      mounts_(mountTableOf(options, knowsMounts)),
      folders_(queue_, fullBudget_, wallClock_),
      questions_(folders_),
      verifier_(folders_, *items_, changes_, questions_, mounts(),
                {options.beforeListing, goesOn_}),
      arming_(folders_, verifier_, questions_, {goesOn_, [this] { drain(); }}),
      roots_(queue_, folders_, *items_, changes_, questions_, mounts()),
      sweep_(folders_, verifier_,
             {options.sweepInterval, knowsMounts
                                         ? FolderSweep::Clock::duration(std::chrono::hours(24))
                                         : FolderSweep::Clock::duration(std::chrono::minutes(10))}),
      rootFlags_(rootFlags),
      readAt_(now())
{
    folders_.isWantedElsewhere = [this](int watch) { return roots_.owns(watch); };
}

WatchLoop::Moment WatchLoop::now() const
{
    return {wallClock_(), readClock(CLOCK_BOOTTIME)};
}

// Events

void WatchLoop::drain()
{
    if (!queue_.isOpen())
        return;
    const Moment begin = now();
    std::size_t count = 0;
    queue_.read([&](const InotifyQueue::Event &event) {
        if (queueLimit_ && ++count > *queueLimit_)
            overflow_ = true;
        else
            note(event);
    });
    // The lost events came after the last reading that was complete.
    if (!overflow_)
        readAt_ = begin;
}

void WatchLoop::note(const InotifyQueue::Event &event)
{
    if (event.watch < 0) {
        overflow_ = true;
        return;
    }
    roots_.note(event);
    if (!event.isOwn && !event.isFolder && !items_->includesFile(event.name))
        return;
    const auto owners = folders_.tree().ownersOf(event.watch);
    if (event.isEnd)
        folders_.watchEnded(event.watch);
    for (const Id owner : owners) {
        if (!folders_.tree().isLive(owner))
            continue;
        if (event.isOwn)
            questions_.ask(folders_.tree().parent(owner), folders_.tree().name(owner));
        else if (matters(owner, event))
            questions_.ask(owner, event.name);
    }
}

bool WatchLoop::matters(Id folder, const InotifyQueue::Event &event) const
{
    if (!event.isFolder)
        return true;
    if (questions_.isAsked(folder, event.name))
        return false;
    return items_->folder(folders_.tree().path(folder, event.name)) != WatchFilter::Folder::skipped;
}

void WatchLoop::mountsChanged()
{
    if (!mounts_)
        return;
    const auto changed = mounts_->reload();
    // Every flush reads the table.
    if (!changed)
        return questions_.askAboutRootsLater();
    for (const std::string &point : *changed)
        roots_.noteMount(point);
}

void WatchLoop::addRoot(const std::string &path)
{
    roots_.add(path);
    questions_.askAboutRoots();
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
    arming_.fitToBudget();
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
    crawled.visit(
        local,
        [this](Id parent, std::string_view name, const CrawledFolder &folder) {
            return arming_.enterCrawled(parent, name, folder);
        },
        [this](Id folder, const std::string &name) {
            if (name.empty())
                notListed_.push_back(folder);
            else
                questions_.ask(folder, name);
        });
    arming_.armCrawled(crawled.beganAt());
    drain();
    questions_.reviewArmed(overflow_);
}

void WatchLoop::flush(Extent extent)
{
    const bool looksEverywhere = extent == Extent::everything;
    drain();
    questions_.askDue(looksEverywhere ? Clock::time_point::max() : Clock::now());
    // A folder that is moved takes the mounts below it along, which the kernel does not report.
    mountsChanged();
    // What is asked from here on came after the first check, and may explain a check that was
    // wrong.
    const auto questions = questions_.take();
    const bool areRootsSuspect = questions_.takeRoots();
    const bool hadLoss = std::exchange(overflow_, false);
    const Moment complete = readAt_;
    if (hadLoss)
        readAt_ = now();
    const bool wasStepped =
        std::abs((readAt_.wall - complete.wall) - (readAt_.boot - complete.boot)) > STEP;
    if (areRootsSuspect || hadLoss || looksEverywhere)
        roots_.check(verifier_, {.flags = rootFlags_, .isSuspect = areRootsSuspect || hadLoss});
    if (hadLoss)
        sweep_.afterLoss(wasStepped ? std::nullopt : std::optional(complete.wall - SLACK),
                         EVENTS_LOST, goesOn_);
    for (const Id id : std::exchange(notListed_, {}))
        listAnew(id);
    for (const auto &[folder, name] : questions) {
        if (!folders_.tree().isLive(folder) || !goesOn_())
            continue;
        if (name.empty())
            verifier_.reconcile(folder, {});
        else
            verifier_.verify(folder, name);
    }
    if (looksEverywhere)
        sweep_.checkAll();
    finish();
    questions_.forgetAnswered();
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
        arming_.fitToBudget();
        folders_.releaseDropped();
    }
    // Moving a folder raises an event, or changes its stamp where it has no watch, so the events
    // are read once more before the answers count.
    drain();
    questions_.reviewAsked(overflow_);
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
    arming_.fitToBudget();
    finish();
}

} // namespace quillon
