#pragma once

#include "platform/linux/disk/MountTable.h"
#include "platform/linux/watching/ChangeLog.h"
#include "platform/linux/watching/CrawlNotes.h"
#include "platform/linux/watching/WatchedFolders.h"

#include <cstdint>
#include <deque>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quillon {

class FSEventItemTest;

/// Compares folders with the disk: brings the tree up to date and notes what is to be told. Not
/// locked.
class FolderVerifier
{
public:
    using Id = WatchTree::Id;

    struct Hooks
    {
        /// Called between the arming and the listing of a folder.
        std::function<void(const std::string &path)> beforeListing;
        /// Called between folders. False when all this is to end.
        std::function<bool()> goesOn;
        /// A remote file system begins in a folder that is entered.
        std::function<void(const std::string &path)> onRemote;
    };

    FolderVerifier(WatchedFolders &folders, const FSEventItemTest &items, ChangeLog &changes,
                   const MountTable *mounts, Hooks hooks);

    /// Looks at one name in a folder.
    void verify(Id parent, std::string_view name, std::uint32_t flags = 0);
    /// Lists a folder that has changed and looks at all of its names.
    void reconcile(Id id, std::uint32_t flags = 0);
    /// Looks at an unwatched folder, and lists it when its stamp has changed. False when it is not
    /// there any more, or is another one.
    bool lookAt(Id id);
    /// Enters a folder that a crawl has noted; armListed() then arms it. NONE when nothing below it
    /// is entered.
    Id enter(Id parent, std::string_view name, const CrawlNotes::Note &note);
    /// Arms the folders that a crawl has listed, as far as the budget goes, and lists those again
    /// that have changed since.
    void armListed();
    /// Arms unwatched folders one after the other, as far as the budget goes, and only then lists
    /// those that have changed.
    void armInOrder(const std::vector<Id> &ids);
    /// Whether what was found in the place of a folder of the tree is still the same. May arm it,
    /// and lists it when it has changed unseen.
    bool isStill(Id id, const std::string &path, const FolderProbe &found);
    /// Enters a root. NONE when it has just gone.
    Id adoptRoot(const std::string &path);
    /// Lists a folder and everything below it as if for the first time. Everything in it that
    /// changed at this time or later is told, if there is one.
    void adopt(Id id, std::optional<std::int64_t> since = {});
    /// Folders that could not be listed for now.
    std::vector<Id> takeUnlisted();

private:
    /// What begins at a path in a folder of the tree.
    enum class Border
    {
        none,
        remote,
        pseudo,
    };
    /// What is in a folder, as far as it counts.
    struct Content
    {
        std::vector<std::string> folders;
        /// The sum of itemHash() over the items.
        std::uint64_t items = 0;
    };

    Border borderAt(Id parent, std::string_view name) const;
    Listing list(Id id, const std::string &path, Content &content) const;
    void adoptChildren(Id id, std::deque<Id> &adopted, std::optional<std::int64_t> since);
    Id admit(Id parent, std::string_view name, const std::string &path);
    void close(Id id, Border border, const std::string &path, const FolderStamp &stamp);
    void verifyRemote(Id parent, std::string_view name, const std::string &path);
    bool hasChanged(Id id, const FolderProbe &found) const;
    void verifyEach(const std::vector<Id> &ids);
    bool armOne(const WatchedFolders::Listed &listed);
    void reconcileOne(Id id, std::uint32_t flags);
    void reconcilePending();
    std::optional<std::uint64_t> takeCrawledItems(Id id);

    WatchedFolders &folders_;
    WatchTree &tree_;
    const FSEventItemTest &items_;
    ChangeLog &changes_;
    /// Null where mounts do not matter.
    const MountTable *const mounts_;
    const Hooks hooks_;
    /// To be listed.
    std::vector<Id> pending_;
    /// Of those among them that a crawl has listed.
    std::unordered_map<Id, std::uint64_t> crawledItems_;
    std::vector<Id> unlisted_;
    bool isReconciling_ = false;
};

} // namespace quillon
