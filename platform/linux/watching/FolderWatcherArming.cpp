#include "platform/linux/watching/FolderWatcher.h"

#include <filesystem>
#include <system_error>

// What the crawl's threads call. A root is armed at once. The folders below are only noted, which
// takes no call into the file system: arming them is the thread's own work, once the crawl has
// ended and somebody can already search what it has found.

namespace quillon {

FolderWatcher::Folder FolderWatcher::armRoot(const std::string &path)
{
    std::shared_ptr<InotifyQueue> queue;
    bool isReserved = false;
    bool isRemote = false;
    std::error_code error;
    const std::string real = std::filesystem::canonical(path, error);
    {
        const MutexLock lock(mutex_);
        if (!core_ || stream_)
            return WatchTree::NONE;
        queue = queue_;
        isRemote = !error && core_->mounts() != nullptr && core_->mounts()->isRemote(real);
        isReserved = !isRemote && core_->folders().reserve();
        if (isRemote)
            core_->roots().addRemote(path);
    }
    if (isRemote)
        return remoteOrNew()->armRoot(path) | REMOTE;
    const WatchRoots::Guards guards = WatchRoots::guard(*queue, path);
    const Sighting seen = sightFolder(*queue, wallClock_, path, true, isReserved);
    const MutexLock lock(mutex_);
    if (!core_)
        return WatchTree::NONE;
    core_->roots().own(guards);
    if (stream_ || seen.isGone()) {
        core_->folders().settle(isReserved, seen);
        return WatchTree::NONE;
    }
    const Folder root = core_->folders().tree().addRoot(path);
    core_->folders().record(root, seen, isReserved);
    core_->roots().add(path, root);
    return notes_.addRoot(path, root);
}

FolderWatcher::Folder FolderWatcher::arm(Folder parent, std::string_view name,
                                         const FolderStamp &stamp)
{
    if (parent == CrawlNotes::NONE)
        return parent;
    if ((parent & REMOTE) != 0) {
        const auto other = remote();
        const Folder folder = other ? other->arm(parent & ~REMOTE, name, stamp) : CrawlNotes::NONE;
        return folder == CrawlNotes::NONE ? folder : folder | REMOTE;
    }
    if (!mountsAtStart_ || !mountsAtStart_->mayBeMountPoint(name))
        return notes_.add(parent, name, stamp, false);
    const std::string above = notes_.path(parent);
    const bool isRemote = mountsAtStart_->borderAt(above, name) == MountTable::Border::remote;
    const Folder folder = notes_.add(parent, name, stamp, isRemote);
    if (!isRemote || folder == CrawlNotes::NONE)
        return folder;
    return remoteOrNew()->armRoot(notes_.path(folder)) | REMOTE;
}

void FolderWatcher::listed(Folder folder, std::uint64_t items)
{
    if (folder == CrawlNotes::NONE)
        return;
    if ((folder & REMOTE) == 0)
        notes_.addItems(folder, items);
    else if (const auto other = remote())
        other->listed(folder & ~REMOTE, items);
}

void FolderWatcher::notListed(Folder folder)
{
    if (folder == CrawlNotes::NONE)
        return;
    if ((folder & REMOTE) == 0)
        notes_.addNotListed(folder);
    else if (const auto other = remote())
        other->notListed(folder & ~REMOTE);
}

void FolderWatcher::notEntered(Folder parent, std::string_view name)
{
    if (parent == CrawlNotes::NONE)
        return;
    if ((parent & REMOTE) == 0)
        notes_.addNotEntered(parent, name);
    else if (const auto other = remote())
        other->notEntered(parent & ~REMOTE, name);
}

} // namespace quillon
