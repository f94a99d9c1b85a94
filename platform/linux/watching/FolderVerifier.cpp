#include "platform/linux/watching/FolderVerifier.h"

#include "platform/FSEventStream.h"

#include <algorithm>
#include <set>
#include <unordered_set>
#include <utility>

namespace quillon {

namespace {

/// The flag for a path that is or was a file, which no pattern of skipped folders is for.
constexpr std::uint32_t ITEM_IS_FILE = 0x10000;

} // namespace

FolderVerifier::FolderVerifier(WatchedFolders &folders, const WatchFilter &items,
                               ChangeLog &changes, OpenQuestions &questions,
                               const MountTable *mounts, Hooks hooks)
    : folders_(folders),
      tree_(folders.tree()),
      items_(items),
      changes_(changes),
      questions_(questions),
      mounts_(mounts),
      hooks_(std::move(hooks))
{}

// Single names

void FolderVerifier::verify(Id parent, std::string_view name, std::uint32_t flags)
{
    const MountBoundary boundary = boundaryAt(parent, name);
    if (boundary == MountBoundary::unknown)
        return questions_.askLater(parent, name);
    if (boundary == MountBoundary::remote || boundary == MountBoundary::automount)
        return verifyElsewhere(parent, name, boundary);
    questions_.noteAsked(parent, name);
    const std::string path = tree_.path(parent, name);
    const FolderProbe found = probeFolder(path, false);
    if (found.isUnknown())
        return questions_.askLater(parent, name);
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
        // The folder may have been away while the receiver checked it.
        if (keepIfSame(child, path, found))
            return changes_.compare(path, ChangeLog::Found::folder);
        folders_.drop(child);
    }
    if (boundary == MountBoundary::pseudo) {
        close(parent, name, boundary);
    } else if (const auto fresh = enter(parent, name); !fresh) {
        return;
    } else if (*fresh != WatchTree::NONE) {
        explore(*fresh);
    } else {
        return changes_.compare(path, ChangeLog::Found::nothing);
    }
    changes_.add(path, ChangeLog::Found::folder, flags);
}

void FolderVerifier::verifyPlace(Id id, std::uint32_t flags)
{
    if (tree_.isLive(id) && !tree_.isRoot(id))
        verify(tree_.parent(id), std::string(tree_.name(id)), flags);
}

/// Nothing is asked of the server here. The watcher of the remote folders reports them. What was
/// mounted where only autofs is left stays as it was: asking for it would mount it.
void FolderVerifier::verifyElsewhere(Id parent, std::string_view name, MountBoundary boundary)
{
    const std::string path = tree_.path(parent, name);
    if (const Id child = tree_.find(parent, name); child != WatchTree::NONE) {
        const auto *known = folders_.unwatched(child);
        if (known != nullptr && known->isClosed &&
            known->stamp.isSameFolder(stampAt(path, boundary)))
            return;
        folders_.drop(child);
    }
    if (items_.folder(path) == WatchFilter::Folder::entered)
        close(parent, name, boundary);
}

bool FolderVerifier::keepIfSame(Id id, const std::string &path, const FolderProbe &found)
{
    const auto isChanged = keep(id, path, found);
    if (isChanged.value_or(false)) {
        pending_.push_back(id);
        reconcilePending();
    }
    return isChanged.has_value();
}

std::optional<bool> FolderVerifier::keep(Id id, const std::string &path, const FolderProbe &found)
{
    const auto *known = folders_.unwatched(id);
    const int watch = tree_.watch(id);
    if (known == nullptr && watch == WatchTree::NO_WATCH)
        return std::nullopt;
    if (known != nullptr && !known->stamp.isSameFolder(found.stamp))
        return std::nullopt;
    if (known != nullptr && known->isClosed)
        return false;

    const bool mayWatch = known == nullptr || folders_.hasRoom();
    const FolderState seen = folders_.sight(path, tree_.isRoot(id), mayWatch);
    if (seen.mayGetWatch() || (known == nullptr && seen.isUnknown()))
        questions_.askLater(tree_.parent(id), tree_.name(id));
    if (known == nullptr) {
        if (seen.watch == watch || seen.isUnknown() || seen.mayGetWatch())
            return false;
        folders_.discard(seen);
        return std::nullopt;
    }
    if (seen.watch == WatchTree::NO_WATCH)
        return hasChanged(id, found);
    // A second look shows what happened between the first look and the watch.
    const bool isChanged = hasChanged(id, probeFolder(path, tree_.isRoot(id)));
    folders_.record(id, seen);
    // The path may have led to another folder when the watch was asked for.
    questions_.noteAsked(tree_.parent(id), tree_.name(id));
    return isChanged;
}

bool FolderVerifier::hasChanged(Id id, const FolderProbe &found) const
{
    const auto *known = folders_.unwatched(id);
    return known == nullptr || !known->isTrusted || known->stamp.changed != found.stamp.changed;
}

void FolderVerifier::checkStamp(Id id)
{
    const std::string path = tree_.path(id);
    const FolderProbe found = probeFolder(path, tree_.isRoot(id));
    const bool isSame = found.isFolder() && folders_.unwatched(id)->stamp.isSameFolder(found.stamp);
    if (!isSame || (hasChanged(id, found) && !keepIfSame(id, path, found)))
        verifyPlace(id);
}

// New folders

FolderVerifier::MountBoundary FolderVerifier::boundaryAt(Id parent, std::string_view name) const
{
    if (mounts_ == nullptr || parent == WatchTree::NONE || !mounts_->mayBeMountPoint(name))
        return MountBoundary::none;
    const auto boundary = mounts_->boundaryAt(tree_.path(parent), name);
    if (!boundary)
        return MountBoundary::unknown;
    if (*boundary == MountTable::Boundary::remote)
        return MountBoundary::remote;
    if (*boundary == MountTable::Boundary::automount)
        return MountBoundary::automount;
    return isOnPseudoFileSystem(tree_.path(parent, name)) ? MountBoundary::pseudo
                                                          : MountBoundary::none;
}

FolderStamp FolderVerifier::stampAt(const std::string &path, MountBoundary boundary) const
{
    return boundary == MountBoundary::remote ? FolderStamp() : probeFolder(path, false).stamp;
}

void FolderVerifier::close(Id parent, std::string_view name, MountBoundary boundary)
{
    const Id id = tree_.add(parent, name);
    const std::string path = tree_.path(id);
    folders_.setUnwatched(id,
                          {.stamp = stampAt(path, boundary), .isTrusted = true, .isClosed = true});
    if (boundary == MountBoundary::remote)
        folders_.noteRemote(path, true);
}

bool FolderVerifier::stopsAtBoundary(Id parent, std::string_view name)
{
    const MountBoundary boundary = boundaryAt(parent, name);
    if (boundary == MountBoundary::unknown)
        questions_.askLater(parent, name);
    else if (boundary != MountBoundary::none)
        close(parent, name, boundary);
    return boundary != MountBoundary::none;
}

std::optional<WatchTree::Id> FolderVerifier::enter(Id parent, std::string_view name)
{
    const FolderState seen =
        folders_.sight(tree_.path(parent, name), parent == WatchTree::NONE, folders_.hasRoom());
    if (seen.isUnknown() || seen.mayGetWatch())
        questions_.askLater(parent, name);
    if (seen.isGone())
        return seen.isUnknown() ? std::nullopt : std::optional(WatchTree::NONE);
    const Id id = tree_.add(parent, name);
    folders_.record(id, seen);
    return id;
}

void FolderVerifier::explore(Id id, std::optional<std::int64_t> since)
{
    // The order is breadth first, so that a small budget is spent on the folders nearest to the
    // roots.
    std::vector<Id> unexplored{id};
    for (std::size_t next = 0; next < unexplored.size() && hooks_.goesOn(); ++next)
        if (tree_.isLive(unexplored[next]))
            exploreChildren(unexplored[next], unexplored, since);
}

void FolderVerifier::exploreChildren(Id id, std::vector<Id> &unexplored,
                                     std::optional<std::int64_t> since)
{
    const std::string path = tree_.path(id);
    Content content;
    list(id, path, content);
    if (since && probeFolder(path, tree_.isRoot(id)).stamp.changed >= *since)
        changes_.add(path, ChangeLog::Found::folder);
    if (auto *known = folders_.unwatched(id))
        known->items = content.itemsHash;
    for (const std::string &name : content.folders) {
        // A folder that changes while it is read may name an entry twice.
        if (tree_.find(id, name) != WatchTree::NONE)
            continue;
        if (stopsAtBoundary(id, name))
            continue;
        if (const auto child = enter(id, name); child && *child != WatchTree::NONE)
            unexplored.push_back(*child);
    }
}

Listing FolderVerifier::list(Id id, const std::string &path, Content &content)
{
    if (hooks_.beforeListing)
        hooks_.beforeListing(path);
    questions_.noteAsked(id);
    const Listing listing = listFolder(path, tree_.isRoot(id), [&](const FolderEntry &entry) {
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
    if (listing == Listing::failed)
        questions_.askLater(id);
    return listing;
}

// Folders that have changed

void FolderVerifier::reconcile(Id id, const Reason &reason)
{
    reconcileOne(id, reason);
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
            reconcileOne(id, {});
    }
    pending_.clear();
    isReconciling_ = false;
}

void FolderVerifier::reconcileOne(Id id, const Reason &reason)
{
    const std::string path = tree_.path(id);
    // The stamp is taken before the listing. What happens meanwhile shows in the next stamp.
    const FolderState before = folders_.sight(path, tree_.isRoot(id), false);
    Content content;
    const Listing listing = list(id, path, content);
    if (before.probe.isUnknown())
        questions_.askLater(id);
    if (listing != Listing::complete || !before.probe.isFolder())
        return; // the folder above reports one that is gone
    const std::unordered_set<std::string_view> onDisk(content.folders.begin(),
                                                      content.folders.end());
    std::set<std::string> missing = changes_.namesToldLately(path);
    std::erase_if(missing, [&](const std::string &name) { return onDisk.contains(name); });
    for (Id child = tree_.firstChild(id); child != WatchTree::NONE;
         child = tree_.nextSibling(child))
        if (!onDisk.contains(tree_.name(child)))
            missing.emplace(tree_.name(child));
    for (const std::string &name : missing)
        verify(id, name, reason.flags);
    for (const std::string &name : content.folders)
        verify(id, name, reason.flags);

    auto *known = folders_.unwatched(id);
    const auto itemsBefore = known != nullptr ? known->items : reason.crawledItems;
    const bool isToldWhole = reason.flags != 0 || !itemsBefore || changes_.wasToldLately(path);
    if (isToldWhole || (*itemsBefore != content.itemsHash &&
                        *itemsBefore + tellNewItems(id, content) != content.itemsHash))
        changes_.add(path, ChangeLog::Found::folder, reason.flags);
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

} // namespace quillon
