#include "platform/linux/watching/WatchedFolders.h"

#include <utility>

namespace quillon {

namespace {

/// Some file systems keep time by the kernel's tick, and two changes within one tick look the same.
constexpr std::int64_t YOUNG = 2'000'000'000;

} // namespace

bool isOlder(const FolderStamp &stamp, std::int64_t time)
{
    return stamp.isKnown() && time - stamp.changed > YOUNG;
}

FolderState WatchedFolders::sight(const std::string &path, bool isRoot, bool mayWatch)
{
    FolderState seen;
    if (mayWatch) {
        const auto added =
            queue_.add(path, isRoot ? InotifyQueue::Links::follow : InotifyQueue::Links::refuse);
        seen.watch = added.watch;
        seen.error = added.error;
        if (added.watch != WatchTree::NO_WATCH)
            return seen;
        if (added.error == ENOSPC) {
            refused_ = true;
            budget_ = tree_.watches();
        }
    }
    const std::int64_t now = wallClock_();
    seen.probe = probeFolder(path, isRoot);
    seen.isTrusted = isOlder(seen.probe.stamp, now);
    return seen;
}

void WatchedFolders::record(Id id, const FolderState &seen)
{
    if (seen.watch == WatchTree::NO_WATCH) {
        setUnwatched(id, {.stamp = seen.probe.stamp, .isTrusted = seen.isTrusted});
        return;
    }
    unwatched_.erase(id);
    tree_.setWatch(id, seen.watch);
}

void WatchedFolders::discard(const FolderState &seen)
{
    if (seen.watch != WatchTree::NO_WATCH && tree_.ownersOf(seen.watch).empty() &&
        !isWantedElsewhere(seen.watch))
        queue_.remove(seen.watch);
}

bool WatchedFolders::hasUnwatched() const
{
    return unwatched_.any([](Id, const Unwatched &) { return true; });
}

std::vector<WatchedFolders::Id> WatchedFolders::swept() const
{
    std::vector<Id> swept;
    unwatched_.any([&](Id id, const Unwatched &known) {
        if (!known.isClosed)
            swept.push_back(id);
        return false;
    });
    return swept;
}

/// Few folders are closed, so the first one usually decides.
bool WatchedFolders::hasSwept() const
{
    return unwatched_.any([](Id, const Unwatched &known) { return !known.isClosed; });
}

void WatchedFolders::dropWatch(Id id)
{
    const int watch = tree_.watch(id);
    if (watch != WatchTree::NO_WATCH && tree_.clearWatch(id) && !isWantedElsewhere(watch))
        queue_.remove(watch);
}

void WatchedFolders::watchEnded(int watch)
{
    for (const Id owner : tree_.ownersOf(watch))
        tree_.clearWatch(owner);
}

void WatchedFolders::drop(Id top)
{
    const std::size_t first = dropped_.size();
    tree_.detach(top, dropped_);
    for (std::size_t i = first; i < dropped_.size(); ++i) {
        const Unwatched *known = unwatched_.find(dropped_[i]);
        if (known != nullptr && known->isClosed)
            noteRemote(tree_.path(dropped_[i]), false);
        unwatched_.erase(dropped_[i]);
    }
}

void WatchedFolders::releaseDropped()
{
    for (const Id id : dropped_)
        dropWatch(id);
    for (const Id id : std::exchange(dropped_, {}))
        tree_.release(id);
}

std::size_t WatchedFolders::bytes() const
{
    return tree_.bytes() + dropped_.capacity() * sizeof(Id) + unwatched_.bytes();
}

} // namespace quillon
