#pragma once

#include "platform/FolderLister.h"

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace quillon {

/// What tells that a folder is still the same one and that nothing has come to or gone from it.
struct FolderStamp
{
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    /// Nanoseconds since 1970 by the file system's clock.
    std::int64_t changed = 0;

    bool isSameFolder(const FolderStamp &other) const
    {
        return device == other.device && inode == other.inode;
    }
};

/// What stands at a path.
struct FolderProbe
{
    FolderLister::Kind kind = FolderLister::Kind::nothing;
    /// Of a folder only.
    FolderStamp stamp;

    bool isFolder() const { return kind == FolderLister::Kind::folder; }
};

/// Looks at an absolute path of any length without opening what is there.
FolderProbe probeFolder(const std::string &path, bool followsLink);

enum class Listing
{
    complete,
    /// The folder may not be read.
    denied,
    /// It is gone, or no folder any more.
    gone,
    /// Descriptors are short, or the disk fails: worth another try later.
    failed,
};

/// Hands over the names in a folder. They are valid for the call only.
Listing listFolder(const std::string &path, bool followsLink,
                   const std::function<void(const FolderEntry &entry)> &receive);

/// Whether a folder of a local disk shows the state of the kernel and no files of anyone.
bool isOnPseudoFileSystem(const std::string &path);

} // namespace quillon
