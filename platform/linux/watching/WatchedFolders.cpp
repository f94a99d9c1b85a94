#include "platform/linux/watching/WatchedFolders.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

/// Some file systems keep time by the kernel's tick, and two changes within one tick look the same.
constexpr std::int64_t YOUNG = 2'000'000'000;

} // namespace

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
    seen.isTrusted = now - seen.probe.stamp.changed > YOUNG;
    return seen;
}

void WatchedFolders::record(Id id, const FolderState &seen)
{
    if (seen.watch != WatchTree::NO_WATCH)
        tree_.setWatch(id, seen.watch);
    else
        unwatched_[id] = {seen.probe.stamp, seen.isTrusted, false, std::nullopt};
}

void WatchedFolders::recordUnwatched(const Listed &listed)
{
    unwatched_[listed.id] = {listed.stamp, isTrusted(listed.stamp), false, listed.items};
}

bool WatchedFolders::isTrusted(const FolderStamp &stamp) const
{
    return stamp.isKnown() && crawledSince_ - stamp.changed > YOUNG;
}

void WatchedFolders::recordClosed(Id id, const FolderStamp &stamp)
{
    unwatched_[id] = {stamp, true, true, std::nullopt};
}

void WatchedFolders::discard(const FolderState &seen)
{
    if (seen.watch != WatchTree::NO_WATCH && tree_.ownersOf(seen.watch).empty() &&
        !isWantedElsewhere(seen.watch))
        queue_.remove(seen.watch);
}

/// Few folders are closed, so the first entry usually decides.
bool WatchedFolders::hasSwept() const
{
    return std::ranges::any_of(unwatched_,
                               [](const auto &known) { return !known.second.isClosed; });
}

const WatchedFolders::Unwatched *WatchedFolders::unwatched(Id id) const
{
    const auto found = unwatched_.find(id);
    return found == unwatched_.end() ? nullptr : &found->second;
}

WatchedFolders::Unwatched *WatchedFolders::unwatched(Id id)
{
    const auto found = unwatched_.find(id);
    return found == unwatched_.end() ? nullptr : &found->second;
}

void WatchedFolders::nowWatched(Id id, int watch)
{
    unwatched_.erase(id);
    tree_.setWatch(id, watch);
}

void WatchedFolders::nowUnwatched(Id id, const FolderState &seen)
{
    unwatched_[id] = {seen.probe.stamp, seen.isTrusted, false, std::nullopt};
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
        const auto known = unwatched_.find(dropped_[i]);
        if (known == unwatched_.end())
            continue;
        if (known->second.isClosed)
            onClosedDropped(tree_.path(dropped_[i]));
        unwatched_.erase(known);
    }
}

void WatchedFolders::releaseDropped()
{
    for (const Id id : dropped_) {
        dropWatch(id);
    }
    for (const Id id : std::exchange(dropped_, {}))
        tree_.release(id);
}

bool WatchedFolders::takeRefused()
{
    return std::exchange(refused_, false);
}

std::size_t WatchedFolders::bytes() const
{
    return tree_.bytes() + dropped_.capacity() * sizeof(Id) + listed_.capacity() * sizeof(Listed) +
           unwatched_.size() * (sizeof(std::pair<Id, Unwatched>) + 2 * sizeof(void *));
}

} // namespace quillon
