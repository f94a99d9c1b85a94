#include "platform/linux/watching/FolderVerifier.h"

#include "platform/FSEventStream.h"

#include <algorithm>
#include <cerrno>
#include <functional>
#include <set>
#include <utility>

namespace quillon {

namespace {

/// LastReport of a path that is or was a file, which no pattern of skipped folders is for.
constexpr std::uint32_t ITEM_IS_FILE = 0x10000;

} // namespace

FolderVerifier::FolderVerifier(WatchedFolders &folders, const WatchFilter &items,
                               ChangeLog &changes, RetryList &retries, const MountTable *mounts,
                               Hooks hooks)
    : folders_(folders),
      tree_(folders.tree()),
      items_(items),
      changes_(changes),
      retries_(retries),
      mounts_(mounts),
      hooks_(std::move(hooks))
{}

// Single names

void FolderVerifier::verify(Id parent, std::string_view name, std::uint32_t flags)
{
    const std::string path = tree_.path(parent, name);
    const MountBoundary border = borderAt(parent, name);
    if (border == MountBoundary::unknown) {
        retries_.add(parent, name);
        return;
    }
    if (border == MountBoundary::remote || border == MountBoundary::automount) {
        verifyElsewhere(parent, name, path, border);
        return;
    }
    looks_.push_back({parent, std::string(name)});
    const FolderProbe found = probeFolder(path, false);
    if (found.isUnknown()) {
        retries_.add(parent, name);
        return;
    }
    const Id child = tree_.find(parent, name);
    const auto verdict = found.isFolder() ? items_.folder(path) : WatchFilter::Folder::skipped;
    if (verdict != WatchFilter::Folder::entered) {
        if (child != WatchTree::NONE)
            folders_.drop(child);
        const bool counts =
            found.isFolder() ? verdict == WatchFilter::Folder::listed
                             : found.kind == FolderLister::Kind::other && items_.includesFile(name);
        const auto what = counts ? ChangeLog::Found::item : ChangeLog::Found::nothing;
        if (child == WatchTree::NONE && items_.includesFile(name))
            flags |= ITEM_IS_FILE;
        // The index still has to forget what was below the folder, so a file in its place is
        // reported in any case.
        if (child != WatchTree::NONE && counts)
            changes_.add(path, what, flags);
        else
            changes_.compare(path, what, flags);
        return;
    }
    if (child != WatchTree::NONE) {
        if (keepIfSame(child, path, found)) {
            // The folder may have been away while the receiver checked it.
            changes_.compare(path, ChangeLog::Found::folder);
            return;
        }
        folders_.drop(child);
    }
    if (border == MountBoundary::pseudo) {
        close(tree_.add(parent, name), border, path, found.stamp);
    } else if (const auto fresh = enter(parent, name, path); !fresh) {
        return;
    } else if (*fresh != WatchTree::NONE) {
        explore(*fresh);
    } else {
        changes_.compare(path, ChangeLog::Found::nothing);
        return;
    }
    changes_.add(path, ChangeLog::Found::folder, flags);
}

/// Nothing is asked of the server here. Whoever looks after the remote folders tells them. What was
/// mounted where only autofs is left stays as it was: asking for it would mount it.
void FolderVerifier::verifyElsewhere(Id parent, std::string_view name, const std::string &path,
                                     MountBoundary border)
{
    const FolderStamp stamp =
        border == MountBoundary::automount ? probeFolder(path, false).stamp : FolderStamp();
    if (const Id child = tree_.find(parent, name); child != WatchTree::NONE) {
        const auto *known = folders_.unwatched(child);
        if (known != nullptr && known->isClosed && known->stamp.isSameFolder(stamp))
            return;
        folders_.drop(child);
    }
    if (items_.folder(path) == WatchFilter::Folder::entered)
        close(tree_.add(parent, name), border, path, stamp);
}

bool FolderVerifier::keepIfSame(Id id, const std::string &path, const FolderProbe &found)
{
    const auto *known = folders_.unwatched(id);
    const int watch = tree_.watch(id);
    if (known == nullptr && watch == WatchTree::NO_WATCH)
        return false;
    if (known != nullptr && !known->stamp.isSameFolder(found.stamp))
        return false;
    if (known != nullptr && known->isClosed)
        return true;

    const bool mayWatch = known == nullptr || folders_.hasRoom();
    const FolderState seen = folders_.sight(path, tree_.isRoot(id), mayWatch);
    if (known == nullptr) {
        const bool isUnanswered = seen.isUnknown() || seen.mayGetWatch();
        if (isUnanswered)
            askAgain(id);
        if (seen.watch == watch || isUnanswered)
            return true;
        folders_.discard(seen);
        return false;
    }
    if (seen.mayGetWatch())
        askAgain(id);
    // A second look shows what happened between the first look and the watch.
    const bool isArmed = seen.watch != WatchTree::NO_WATCH;
    const bool isChanged = hasChanged(id, isArmed ? probeFolder(path, tree_.isRoot(id)) : found);
    if (isArmed) {
        folders_.nowWatched(id, seen.watch);
        // The path may have led to another folder when the watch was asked for.
        if (!tree_.isRoot(id))
            looks_.push_back({tree_.parent(id), std::string(tree_.name(id))});
    }
    if (isChanged)
        pending_.push_back(id);
    reconcilePending();
    return true;
}

bool FolderVerifier::hasChanged(Id id, const FolderProbe &found) const
{
    const auto *known = folders_.unwatched(id);
    return known == nullptr || !known->isTrusted || known->stamp.changed != found.stamp.changed;
}

bool FolderVerifier::lookAt(Id id)
{
    const std::string path = tree_.path(id);
    const FolderProbe found = probeFolder(path, tree_.isRoot(id));
    const auto *known = folders_.unwatched(id);
    if (known == nullptr || !found.isFolder() || !known->stamp.isSameFolder(found.stamp))
        return false;
    return !hasChanged(id, found) || keepIfSame(id, path, found);
}

WatchTree::Id FolderVerifier::enterCrawledRoot(const std::string &path,
                                               const CrawledFolder &crawled)
{
    const Id id = tree_.addRoot(path);
    armOne({id, crawled.stamp, crawled.items});
    return id;
}

WatchTree::Id FolderVerifier::enterCrawled(Id parent, std::string_view name,
                                           const CrawledFolder &crawled)
{
    if (const Id known = tree_.find(parent, name); known != WatchTree::NONE)
        return known;
    const MountBoundary border = borderAt(parent, name);
    if (border == MountBoundary::unknown) {
        retries_.add(parent, name);
        return WatchTree::NONE;
    }
    const Id id = tree_.add(parent, name);
    if (border == MountBoundary::none) {
        folders_.recordListed({id, crawled.stamp, crawled.items});
        return id;
    }
    const std::string path = tree_.path(id);
    close(id, border, path,
          border == MountBoundary::remote ? FolderStamp() : probeFolder(path, false).stamp);
    return WatchTree::NONE;
}

void FolderVerifier::armListed()
{
    std::vector<WatchedFolders::Listed> listed = folders_.takeListed();
    if (tree_.watches() + listed.size() > folders_.budget())
        std::ranges::stable_sort(listed, {},
                                 [this](const auto &one) { return tree_.depth(one.id); });
    std::vector<Id> others;
    const bool wasReconciling = std::exchange(isReconciling_, true);
    for (const auto &one : listed) {
        if (!hooks_.goesOn())
            return;
        if (tree_.isLive(one.id) && !armOne(one))
            others.push_back(one.id);
    }
    isReconciling_ = wasReconciling;
    reconcilePending();
    crawledItems_.clear();
    verifyEach(others);
}

/// Returns false when there is no folder any more.
bool FolderVerifier::armOne(const WatchedFolders::Listed &listed)
{
    const bool hasRoom = folders_.hasRoom();
    if (!hasRoom && listed.stamp.isKnown()) {
        folders_.recordUnwatched(listed);
        return true;
    }
    const std::string path = tree_.path(listed.id);
    const bool isRoot = tree_.isRoot(listed.id);
    FolderState seen = folders_.sight(path, isRoot, hasRoom);
    if (seen.watch != WatchTree::NO_WATCH)
        seen.probe = probeFolder(path, isRoot);
    if (seen.isUnknown() || seen.mayGetWatch())
        askAgain(listed.id);
    if (seen.isUnknown()) {
        folders_.recordUnwatched(listed);
        return true;
    }
    if (!seen.probe.isFolder() && !seen.probe.isUnknown()) {
        folders_.discard(seen);
        return false;
    }
    folders_.record(listed.id, seen);
    // Another folder in its place has another stamp, and so have the folders below it.
    const FolderStamp &now = seen.probe.stamp;
    const bool isSame = !listed.stamp.isKnown() || listed.stamp == now;
    if (!isSame || !folders_.isTrusted(now)) {
        pending_.push_back(listed.id);
        crawledItems_[listed.id] = listed.items;
    }
    return true;
}

void FolderVerifier::armInOrder(const std::vector<Id> &ids)
{
    std::vector<Id> others;
    // Listing them at once would give the watches to the folders below.
    const bool wasReconciling = std::exchange(isReconciling_, true);
    for (const Id id : ids) {
        if (!tree_.isLive(id) || folders_.unwatched(id) == nullptr || !hooks_.goesOn())
            continue;
        const std::string path = tree_.path(id);
        const FolderProbe found = probeFolder(path, tree_.isRoot(id));
        if (!found.isFolder() || !keepIfSame(id, path, found))
            others.push_back(id);
    }
    isReconciling_ = wasReconciling;
    reconcilePending();
    verifyEach(others);
}

void FolderVerifier::verifyEach(const std::vector<Id> &ids)
{
    for (const Id id : ids)
        if (tree_.isLive(id) && !tree_.isRoot(id))
            verify(tree_.parent(id), std::string(tree_.name(id)));
}

// New folders

FolderVerifier::MountBoundary FolderVerifier::borderAt(Id parent, std::string_view name) const
{
    if (mounts_ == nullptr || !mounts_->mayBeMountPoint(name))
        return MountBoundary::none;
    const auto border = mounts_->boundaryAt(tree_.path(parent), name);
    if (!border)
        return MountBoundary::unknown;
    if (*border == MountTable::Boundary::remote)
        return MountBoundary::remote;
    if (*border == MountTable::Boundary::automount)
        return MountBoundary::automount;
    return isOnPseudoFileSystem(tree_.path(parent, name)) ? MountBoundary::pseudo
                                                          : MountBoundary::none;
}

void FolderVerifier::close(Id id, MountBoundary border, const std::string &path,
                           const FolderStamp &stamp)
{
    folders_.recordClosed(id, stamp);
    if (border == MountBoundary::remote)
        hooks_.onRemote(path);
}

std::optional<WatchTree::Id> FolderVerifier::enter(Id parent, std::string_view name,
                                                   const std::string &path)
{
    const FolderState seen = folders_.sight(path, false, folders_.hasRoom());
    if (seen.isUnknown() || seen.mayGetWatch())
        retries_.add(parent, name);
    if (seen.isGone())
        return seen.isUnknown() ? std::nullopt : std::optional(WatchTree::NONE);
    const Id id = tree_.add(parent, name);
    folders_.record(id, seen);
    return id;
}

std::optional<WatchTree::Id> FolderVerifier::enterRoot(const std::string &path)
{
    const FolderState seen = folders_.sight(path, true, folders_.hasRoom());
    if (seen.isUnknown() || seen.mayGetWatch())
        retries_.addRoot(path);
    if (seen.isGone())
        return seen.isUnknown() ? std::nullopt : std::optional(WatchTree::NONE);
    const Id id = tree_.addRoot(path);
    folders_.record(id, seen);
    return id;
}

/// Whatever took the folder's place is checked again.
void FolderVerifier::askAgain(Id id)
{
    if (tree_.isRoot(id))
        retries_.addRoot(tree_.path(id));
    else
        retries_.add(tree_.parent(id), tree_.name(id));
}

void FolderVerifier::explore(Id id, std::optional<std::int64_t> since)
{
    // The order is breadth first, so that a small budget is spent on the folders nearest to the
    // roots.
    std::deque<Id> unexplored{id};
    while (!unexplored.empty() && hooks_.goesOn()) {
        const Id next = unexplored.front();
        unexplored.pop_front();
        if (tree_.isLive(next))
            exploreChildren(next, unexplored, since);
    }
}

void FolderVerifier::exploreChildren(Id id, std::deque<Id> &unexplored,
                                     std::optional<std::int64_t> since)
{
    const std::string path = tree_.path(id);
    if (hooks_.beforeListing)
        hooks_.beforeListing(path);
    Content content;
    looks_.push_back({id});
    if (list(id, path, content) == Listing::failed)
        retries_.add(id);
    if (since && probeFolder(path, tree_.isRoot(id)).stamp.changed >= *since)
        changes_.add(path, ChangeLog::Found::folder);
    if (auto *known = folders_.unwatched(id))
        known->items = content.itemsHash;
    for (const std::string &name : content.folders) {
        // A folder that changes while it is read may name an entry twice.
        if (tree_.find(id, name) != WatchTree::NONE)
            continue;
        const std::string childPath = tree_.path(id, name);
        if (const MountBoundary border = borderAt(id, name); border == MountBoundary::unknown)
            retries_.add(id, name);
        else if (border != MountBoundary::none)
            close(tree_.add(id, name), border, childPath,
                  border == MountBoundary::remote ? FolderStamp()
                                                  : probeFolder(childPath, false).stamp);
        else if (const auto child = enter(id, name, childPath); child && *child != WatchTree::NONE)
            unexplored.push_back(*child);
    }
}

Listing FolderVerifier::list(Id id, const std::string &path, Content &content) const
{
    return listFolder(path, tree_.isRoot(id), [&](const FolderEntry &entry) {
        bool counts = !entry.isFolder && items_.includesFile(entry.name);
        if (entry.isFolder) {
            const auto verdict = items_.folder(tree_.path(id, entry.name));
            counts = verdict == WatchFilter::Folder::listed;
            if (verdict == WatchFilter::Folder::entered)
                content.folders.emplace_back(entry.name);
        }
        if (counts) {
            content.items.emplace_back(entry.name);
            content.itemsHash += itemHash(entry.name);
        }
    });
}

// Folders that have changed

void FolderVerifier::reconcile(Id id, std::uint32_t flags)
{
    reconcileOne(id, flags);
    reconcilePending();
}

/// The folders are listed one after the other without recursion, since a tree may be deeper than
/// the stack.
void FolderVerifier::reconcilePending()
{
    if (std::exchange(isReconciling_, true))
        return;
    while (!pending_.empty() && hooks_.goesOn()) {
        const Id id = pending_.back();
        pending_.pop_back();
        if (tree_.isLive(id))
            reconcileOne(id, 0);
    }
    pending_.clear();
    isReconciling_ = false;
}

void FolderVerifier::reconcileOne(Id id, std::uint32_t flags)
{
    const std::string path = tree_.path(id);
    // The stamp is taken before the listing. What happens meanwhile shows in the next stamp.
    const FolderState before = folders_.sight(path, tree_.isRoot(id), false);
    if (hooks_.beforeListing)
        hooks_.beforeListing(path);
    Content content;
    looks_.push_back({id});
    const Listing listing = list(id, path, content);
    if (listing == Listing::failed || before.probe.isUnknown()) {
        retries_.add(id);
        return;
    }
    if (listing == Listing::gone || !before.probe.isFolder())
        return; // the folder above tells that
    const std::unordered_set<std::string_view> onDisk(content.folders.begin(),
                                                      content.folders.end());
    std::set<std::string> missing = changes_.namesToldLately(path);
    std::erase_if(missing, [&](const std::string &name) { return onDisk.contains(name); });
    for (Id child = tree_.firstChild(id); child != WatchTree::NONE;
         child = tree_.nextSibling(child))
        if (!onDisk.contains(tree_.name(child)))
            missing.emplace(tree_.name(child));
    for (const std::string &name : missing)
        verify(id, name, flags);
    for (const std::string &name : content.folders)
        verify(id, name, flags);

    auto *known = folders_.unwatched(id);
    const auto itemsBefore = known != nullptr ? known->items : takeCrawledItems(id);
    const bool isToldWhole = flags != 0 || !itemsBefore || changes_.wasToldLately(path);
    if (isToldWhole || (*itemsBefore != content.itemsHash &&
                        *itemsBefore + tellNewItems(id, content) != content.itemsHash))
        changes_.add(path, ChangeLog::Found::folder, flags);
    if (known != nullptr) {
        known->stamp = before.probe.stamp;
        known->isTrusted = before.isTrusted;
        known->items = content.itemsHash;
    }
}

/// Reports the items that the index lacks. Returns the sum of itemHash() over all items.
std::uint64_t FolderVerifier::tellNewItems(Id id, const Content &content)
{
    std::uint64_t sum = 0;
    for (const std::string &name : content.items) {
        const std::string path = tree_.path(id, name);
        if (items_.isIndexed(path))
            continue;
        changes_.add(path, ChangeLog::Found::item, items_.includesFile(name) ? ITEM_IS_FILE : 0);
        sum += itemHash(name);
    }
    return sum;
}

std::optional<std::uint64_t> FolderVerifier::takeCrawledItems(Id id)
{
    const auto found = crawledItems_.find(id);
    if (found == crawledItems_.end())
        return std::nullopt;
    const std::uint64_t items = found->second;
    crawledItems_.erase(found);
    return items;
}

} // namespace quillon
