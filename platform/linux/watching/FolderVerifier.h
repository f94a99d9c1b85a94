#pragma once

#include "platform/linux/disk/MountTable.h"
#include "platform/linux/watching/ChangeLog.h"
#include "platform/linux/watching/OpenQuestions.h"
#include "platform/linux/watching/WatchedFolders.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
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
    };

    /// Without mounts, everything counts as local.
    FolderVerifier(WatchedFolders &folders, const WatchFilter &items, ChangeLog &changes,
                   OpenQuestions &questions, const MountTable *mounts, Hooks hooks);

    /// Checks one name in a folder.
    void verify(Id parent, std::string_view name, std::uint32_t flags = 0);
    /// Checks what is in the place of a folder. Nothing is done for a root, which WatchRoots
    /// checks.
    void verifyPlace(Id id, std::uint32_t flags = 0);
    struct Reason
    {
        /// The flags of what is reported.
        std::uint32_t flags = 0;
        /// The sum of itemHash() over the items that a crawl has listed in a watched folder. If it
        /// is absent, the whole folder is reported.
        std::optional<std::uint64_t> crawledItems = {};
    };
    /// Lists a folder that has changed and checks all of its names.
    void reconcile(Id id, const Reason &reason);
    /// Checks an unwatched folder by its stamp.
    void checkStamp(Id id);
    /// Keeps a folder of the tree if the same folder was found in its place, watches it as far as
    /// the budget goes, and lists it if it has changed unseen. Returns false, and does nothing, if
    /// another folder was found.
    bool keepIfSame(Id id, const std::string &path, const FolderProbe &found);
    /// Does the same without listing the folder. Returns nothing if another folder was found, and
    /// otherwise whether the folder has changed unseen.
    std::optional<bool> keep(Id id, const std::string &path, const FolderProbe &found);
    /// Adds a name at which another file system begins that is not entered. Returns false, and does
    /// nothing, if none begins there.
    bool stopsAtBoundary(Id parent, std::string_view name);
    /// Enters a folder, or a root by its path. Returns NONE when it has just gone, and nothing when
    /// the disk did not answer.
    std::optional<Id> enter(Id parent, std::string_view name);
    /// Lists a folder and everything below it as if for the first time. If a time is given,
    /// everything in it that has changed since then is reported.
    void explore(Id id, std::optional<std::int64_t> since = {});

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

    MountBoundary boundaryAt(Id parent, std::string_view name) const;
    FolderStamp stampAt(const std::string &path, MountBoundary boundary) const;
    Listing list(Id id, const std::string &path, Content &content);
    void exploreChildren(Id id, std::vector<Id> &unexplored, std::optional<std::int64_t> since);
    void close(Id parent, std::string_view name, MountBoundary boundary);
    void verifyElsewhere(Id parent, std::string_view name, MountBoundary boundary);
    bool hasChanged(Id id, const FolderProbe &found) const;
    void reconcileOne(Id id, const Reason &reason);
    void reconcilePending();
    std::uint64_t tellNewItems(Id id, const Content &content);

    WatchedFolders &folders_;
    WatchTree &tree_;
    const WatchFilter &items_;
    ChangeLog &changes_;
    OpenQuestions &questions_;
    /// It is null when mounts do not matter.
    const MountTable *const mounts_;
    const Hooks hooks_;
    /// These folders are still to be listed.
    std::vector<Id> pending_;
    bool isReconciling_ = false;
};

} // namespace quillon
