#include "platform/linux/watching/FolderSweep.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

constexpr FolderSweep::Clock::duration SLICE = 5ms;
constexpr FolderSweep::Clock::duration PAUSE = 45ms;
/// A sweep takes one part in this many of the time.
constexpr int SHARE = 200;

} // namespace

FolderSweep::Clock::time_point FolderSweep::due() const
{
    return left_.empty() && !folders_.hasSwept() ? Clock::time_point::max() : next_;
}

void FolderSweep::begin()
{
    spent_ = {};
    left_ = folders_.swept();
    // The folders nearest to the root come first, and so at the end.
    std::ranges::sort(left_, std::ranges::greater(),
                      [this](Id id) { return folders_.tree().depth(id); });
}

bool FolderSweep::goOn(Clock::time_point now)
{
    if (left_.empty())
        begin();
    const Clock::time_point end = now + SLICE;
    Clock::time_point at = now;
    for (; !left_.empty() && at < end; at = Clock::now())
        checkNext();
    spent_ += at - now;
    if (!left_.empty()) {
        next_ = at + PAUSE;
        return false;
    }
    next_ =
        at + std::clamp(spent_ * SHARE, pace_.interval, std::max(pace_.interval, pace_.longest));
    return true;
}

void FolderSweep::checkAll()
{
    left_.clear();
    begin();
    while (!left_.empty())
        checkNext();
}

void FolderSweep::checkNext()
{
    const Id id = left_.back();
    left_.pop_back();
    check(id);
}

void FolderSweep::check(Id id)
{
    const auto *known = std::as_const(folders_).unwatched(id);
    // The id may belong to another folder by now.
    if (known != nullptr && !known->isClosed && folders_.tree().isLive(id))
        verifier_.checkStamp(id);
}

void FolderSweep::afterLoss(std::optional<std::int64_t> since, std::uint32_t flags,
                            const std::function<bool()> &goesOn)
{
    const WatchTree &tree = folders_.tree();
    std::vector<Id> all;
    for (Id id = 1; id < tree.idLimit(); ++id)
        if (tree.isLive(id))
            all.push_back(id);
    std::ranges::stable_sort(all, {}, [&](Id id) { return tree.depth(id); });
    for (const Id id : all) {
        if (!goesOn())
            return;
        // Folders that were found since have just been listed.
        if (!tree.isLive(id))
            continue;
        if (std::as_const(folders_).unwatched(id) != nullptr) {
            check(id);
            continue;
        }
        const FolderProbe found = probeFolder(tree.path(id), tree.isRoot(id));
        if (!found.isFolder())
            verifier_.verifyPlace(id, flags);
        else if (!since || found.stamp.changed >= *since)
            verifier_.reconcile(id, {.flags = flags});
    }
}

} // namespace quillon
