#pragma once

#include "base/PagedMap.h"
#include "platform/linux/disk/FolderProbe.h"
#include "platform/linux/disk/LongPath.h"
#include "platform/linux/watching/InotifyQueue.h"
#include "platform/linux/watching/WatchTree.h"

#include <cerrno>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

/// The state in which a folder was found: with a watch, or by its stamp.
struct FolderState
{
    int watch = WatchTree::NO_WATCH;
    /// The reason why there is no watch, as in errno; 0 when none was requested.
    int error = 0;
    FolderProbe probe;
    /// True when the stamp is old enough for a later change to show in it.
    bool isTrusted = false;

    bool isGone() const { return watch == WatchTree::NO_WATCH && !probe.isFolder(); }
    /// Returns true when nobody knows whether the folder is there.
    bool isUnknown() const { return watch == WatchTree::NO_WATCH && probe.isUnknown(); }
    /// Returns true when the watch was refused for a reason that may pass. A used-up quota is not
    /// such a reason.
    bool mayGetWatch() const { return error != 0 && error != ENOSPC && !meansAbsence(error); }
};

/// Returns the nanoseconds since 1970.
using WallClock = std::function<std::int64_t()>;

/// Returns whether a stamp is so much older than a time, in nanoseconds since 1970, that any change
/// since then has given the folder another stamp. Returns false for an unknown stamp.
bool isOlder(const FolderStamp &stamp, std::int64_t time);

/// The tree of folders, what is known about those without a watch, and the budget. Not locked.
class WatchedFolders
{
public:
    using Id = WatchTree::Id;

    /// A folder without a watch.
    struct Unwatched
    {
        FolderStamp stamp = {};
        /// If false, the folder must be listed again the next time even if its stamp is the same,
        /// since the stamp was too young to tell two changes apart.
        bool isTrusted = false;
        /// True when the folder is not entered: another watcher, or none, takes care of what is
        /// mounted there.
        bool isClosed = false;
        /// The sum of itemHash() over its items; absent when nobody has listed it yet.
        std::optional<std::uint64_t> items = {};
    };

    WatchedFolders(const InotifyQueue &queue, std::size_t budget, WallClock wallClock)
        : queue_(queue), wallClock_(std::move(wallClock)), budget_(budget)
    {}

    WatchTree &tree() { return tree_; }
    const WatchTree &tree() const { return tree_; }

    /// Checks a folder, and asks for a watch on it if that is allowed.
    FolderState sight(const std::string &path, bool isRoot, bool mayWatch);
    /// Returns whether one more watch is within the budget.
    bool hasRoom() const { return tree_.watches() < budget_; }
    /// Records what was found of a folder, which has no watch so far. A folder that is about to
    /// lose its watch to the budget may have one until dropWatch(), so that what was reported up to
    /// now is still read.
    void record(Id id, const FolderState &seen);
    void setUnwatched(Id id, const Unwatched &known) { unwatched_.set(id, known); }
    /// Releases the watch in the state if no folder owns it.
    void discard(const FolderState &seen);

    const Unwatched *unwatched(Id id) const { return unwatched_.find(id); }
    Unwatched *unwatched(Id id) { return unwatched_.find(id); }
    bool hasUnwatched() const;
    /// Return the folders without a watch that are entered, which a sweep checks, and whether there
    /// are any.
    std::vector<Id> swept() const;
    bool hasSwept() const;

    /// Releases the watch of a folder if no other folder owns it.
    void dropWatch(Id id);
    /// Records that the kernel has ended a watch.
    void watchEnded(int watch);

    /// Takes a folder and what is below it out of the tree. The watches stay until
    /// releaseDropped(), since a folder found elsewhere may take them over.
    void drop(Id top);
    void releaseDropped();
    /// It is asked before a watch is released that no folder owns any more.
    std::function<bool(int watch)> isWantedElsewhere;

    /// A folder on a remote file system, which the watcher of remote folders looks after.
    struct RemoteChange
    {
        std::string path;
        bool hasCome = false;
    };
    void noteRemote(const std::string &path, bool hasCome) { remote_.push_back({path, hasCome}); }
    /// Returns the changes that were noted since the last call, oldest first.
    std::vector<RemoteChange> takeRemoteChanges() { return std::exchange(remote_, {}); }

    std::size_t budget() const { return budget_; }
    void setBudget(std::size_t budget) { budget_ = budget; }
    /// Returns whether the system has refused a watch for lack of room since the last call.
    bool takeRefused() { return std::exchange(refused_, false); }

    std::size_t bytes() const;

private:
    const InotifyQueue &queue_;
    const WallClock wallClock_;
    WatchTree tree_;
    PagedMap<Unwatched> unwatched_;
    std::vector<Id> dropped_;
    std::vector<RemoteChange> remote_;
    std::size_t budget_;
    bool refused_ = false;
};

} // namespace quillon
