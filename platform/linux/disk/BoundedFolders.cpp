#include "platform/linux/disk/BoundedFolders.h"

#include "base/PathText.h"
#include "platform/linux/disk/FileSystemKind.h"
#include "platform/linux/disk/MountPoints.h"

#include <string_view>
#include <vector>

namespace quillon {

std::string remoteDiskOf(const std::string &path)
{
    Mount nearest;
    for (const Mount &mount : mounts().value_or(std::vector<Mount>()))
        if (isAtOrBelow(path, mount.point) && mount.point.size() >= nearest.point.size())
            nearest = mount;
    return isRemoteFileSystem(nearest.type) ? nearest.point : path;
}

FolderPresence BoundedFolderIdentity::presence(const std::string &path) const
{
    return calls_
        .run(path, patience_, [&folders = folders_, path] { return folders.presence(path); })
        .value_or(FolderPresence::unanswered);
}

std::optional<FolderId> BoundedFolderIdentity::identify(const std::string &path) const
{
    return calls_
        .run(path, patience_, [&folders = folders_, path] { return folders.identify(path); })
        .value_or(std::nullopt);
}

std::optional<std::string> BoundedFolderIdentity::find(const std::string &parent,
                                                       const FolderId &id) const
{
    return calls_
        .run(parent, patience_,
             [&folders = folders_, parent, id] { return folders.find(parent, id); })
        .value_or(std::nullopt);
}

FolderLister::Kind BoundedFolderLister::kind(const std::string &path)
{
    return calls_.run(path, patience_, [&folders = folders_, path] { return folders.kind(path); })
        .value_or(Kind::unknown);
}

} // namespace quillon
