#pragma once

#include "platform/linux/disk/MountTable.h"
#include "platform/linux/watching/ChangeLog.h"
#include "platform/linux/watching/CrawlNotes.h"
#include "platform/linux/watching/RetryList.h"
#include "platform/linux/watching/WatchedFolders.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>
#include <vector>

namespace quillon {

class WatchFilter;

/// Compares folders with the disk, brings the tree up to date and notes what is to be reported. Not
/// locked.
///
/// A folder is entered when the tree takes it up, with a watch if there is one to be had. It is
/// explored when it is listed, and all that is found below it is entered. A folder is closed when
/// the tree has it and nothing below it is to be entered.
class FolderVerifier
{
public:
    using Id = WatchTree::Id;

    struct Hooks
    {
        /// It is called between the arming and the listing of a folder.
        std::function<void(const std::string &path)> beforeListing;
        /// It is called between folders. Returns false when the work is to end.
        std::function<bool()> goesOn;
        /// A remote file system begins in a folder that is entered.
        std::function<void(const std::string &path)> onRemote;
    };

    /// A place that was checked by its path: a name in a folder or, with an empty name, the content
    /// of the folder.
    using Look = RetryList::Question;

    /// Questions that the disk does not answer go to the retries.
    FolderVerifier(WatchedFolders &folders, const WatchFilter &items, ChangeLog &changes,
                   RetryList &retries, const MountTable *mounts, Hooks hooks);

    /// Checks one name in a folder.
    void verify(Id parent, std::string_view name, std::uint32_t flags = 0);
    /// Lists a folder that has changed and checks all of its names.
    void reconcile(Id id, std::uint32_t flags = 0);
    /// Checks an unwatched folder, and lists it when its stamp has changed. Returns false when the
    /// folder is gone or another one is in its place.
    bool lookAt(Id id);
    /// Enters a root that a crawl has listed and asks for its watch.
    Id enterCrawledRoot(const std::string &path, const CrawledFolder &crawled);
    /// Enters a folder that a crawl has listed; armListed() then asks for its watch. Returns NONE
    /// when nothing below it is entered.
    Id enterCrawled(Id parent, std::string_view name, const CrawledFolder &crawled);
    /// Arms the folders that a crawl has listed, as far as the budget goes, and lists those again
    /// that have changed since.
    void armListed();
    /// Arms unwatched folders one after the other, as far as the budget goes, and only then lists
    /// those that have changed.
    void armInOrder(const std::vector<Id> &ids);
    /// Keeps a folder of the tree if the same folder was found in its place, watches it as far as
    /// the budget goes, and lists it if it has changed unseen. Returns false, and does nothing, if
    /// another folder was found.
    bool keepIfSame(Id id, const std::string &path, const FolderProbe &found);
    /// Enters a root. Returns NONE when it has just gone, and nothing when the disk did not answer.
    std::optional<Id> enterRoot(const std::string &path);
    /// Lists a folder and everything below it as if for the first time. If a time is given,
    /// everything in it that has changed since then is reported.
    void explore(Id id, std::optional<std::int64_t> since = {});
    /// Returns everything that was checked since the last call. Each check was right only if the
    /// folders above were in their places all the while.
    std::vector<Look> takeLooks() { return std::exchange(looks_, {}); }

private:
    /// The kind of mount boundary at a path in a folder of the tree.
    enum class MountBoundary
    {
        none,
        remote,
        automount,
        pseudo,
        /// The disk did not answer.
        unknown,
    };
    /// The content of a folder, as far as it counts.
    struct Content
    {
        std::vector<std::string> folders;
        /// The files, and the folders that are not entered.
        std::vector<std::string> items;
        /// The sum of itemHash() over the items.
        std::uint64_t itemsHash = 0;
    };

    MountBoundary borderAt(Id parent, std::string_view name) const;
    Listing list(Id id, const std::string &path, Content &content) const;
    void exploreChildren(Id id, std::deque<Id> &unexplored, std::optional<std::int64_t> since);
    /// Returns NONE when there is no folder any more, and nothing when the disk did not answer.
    std::optional<Id> enter(Id parent, std::string_view name, const std::string &path);
    void askAgain(Id id);
    void close(Id id, MountBoundary border, const std::string &path, const FolderStamp &stamp);
    void verifyElsewhere(Id parent, std::string_view name, const std::string &path,
                         MountBoundary border);
    bool hasChanged(Id id, const FolderProbe &found) const;
    void verifyEach(const std::vector<Id> &ids);
    bool armOne(const WatchedFolders::Listed &listed);
    void reconcileOne(Id id, std::uint32_t flags);
    void reconcilePending();
    std::uint64_t tellNewItems(Id id, const Content &content);
    std::optional<std::uint64_t> takeCrawledItems(Id id);

    WatchedFolders &folders_;
    WatchTree &tree_;
    const WatchFilter &items_;
    ChangeLog &changes_;
    RetryList &retries_;
    /// Null when mounts do not matter.
    const MountTable *const mounts_;
    const Hooks hooks_;
    /// These folders are still to be listed.
    std::vector<Id> pending_;
    /// The sums over the items of pending folders, as a crawl has listed them.
    std::unordered_map<Id, std::uint64_t> crawledItems_;
    std::vector<Look> looks_;
    bool isReconciling_ = false;
};

} // namespace quillon
