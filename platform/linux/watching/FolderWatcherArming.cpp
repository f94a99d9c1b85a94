#include "platform/linux/watching/FolderWatcher.h"

#include <filesystem>
#include <system_error>

// What the crawl's threads call. The lock is held to look at the tree and to enter a folder, not
// while the file system is asked: that may take long, and the other threads are to go on.

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
    const auto guards = WatchRoots::guard(*queue, path);
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
    return root;
}

FolderWatcher::Folder FolderWatcher::arm(Folder parent, std::string_view name)
{
    if (parent == WatchTree::NONE)
        return WatchTree::NONE;
    if ((parent & REMOTE) != 0) {
        const auto other = remote();
        const Folder folder = other ? other->arm(parent & ~REMOTE, name) : WatchTree::NONE;
        return folder == WatchTree::NONE ? folder : folder | REMOTE;
    }
    std::shared_ptr<InotifyQueue> queue;
    std::string path;
    bool isReserved = false;
    auto border = FolderVerifier::Border::none;
    {
        const MutexLock lock(mutex_);
        if (!core_ || stream_)
            return WatchTree::NONE;
        WatchTree &tree = core_->folders().tree();
        if (const Folder known = tree.find(parent, name); known != WatchTree::NONE)
            return known;
        queue = queue_;
        path = tree.path(parent, name);
        border = core_->verifier().borderAt(parent, name, path);
        isReserved = border == FolderVerifier::Border::none && core_->folders().reserve();
    }
    if (border != FolderVerifier::Border::none)
        return armBorder(border, parent, name, path);
    const Sighting seen = sightFolder(*queue, wallClock_, path, false, isReserved);
    const MutexLock lock(mutex_);
    if (!core_)
        return WatchTree::NONE;
    if (stream_ || seen.isGone()) {
        core_->folders().settle(isReserved, seen);
        core_->folders().discard(seen);
        return WatchTree::NONE;
    }
    const Folder folder = core_->folders().tree().add(parent, name);
    core_->folders().record(folder, seen, isReserved);
    return folder;
}

FolderWatcher::Folder FolderWatcher::armBorder(FolderVerifier::Border border, Folder parent,
                                               std::string_view name, const std::string &path)
{
    const bool isRemote = border == FolderVerifier::Border::remote;
    {
        const MutexLock lock(mutex_);
        if (!core_ || stream_)
            return WatchTree::NONE;
        core_->folders().recordClosed(core_->folders().tree().add(parent, name),
                                      isRemote ? FolderStamp() : probeFolder(path, false).stamp);
    }
    return isRemote ? remoteOrNew()->armRoot(path) | REMOTE : WatchTree::NONE;
}

void FolderWatcher::notListed(Folder folder)
{
    if (folder == WatchTree::NONE)
        return;
    if ((folder & REMOTE) != 0) {
        if (const auto other = remote())
            other->notListed(folder & ~REMOTE);
        return;
    }
    const MutexLock lock(mutex_);
    if (core_ && !stream_)
        core_->notListed(folder);
}

} // namespace quillon
