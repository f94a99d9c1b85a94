#pragma once

#include "platform/FolderLister.h"
#include "platform/FolderStamp.h"

#include <functional>
#include <string>
#include <string_view>

namespace quillon {

/// What stands at a path.
struct FolderProbe
{
    FolderLister::Kind kind = FolderLister::Kind::nothing;
    /// The stamp is known for a folder only.
    FolderStamp stamp;

    bool isFolder() const { return kind == FolderLister::Kind::folder; }
    /// The file system has not answered, so what stands there is as it was.
    bool isUnknown() const { return kind == FolderLister::Kind::unknown; }
};

/// Looks at an absolute path of any length without opening what is there.
FolderProbe probeFolder(const std::string &path, bool followsLink);

enum class Listing
{
    complete,
    /// The folder is gone, or is no folder any more.
    gone,
    /// The folder may not be read, descriptors are short, or the disk fails: worth another try
    /// later.
    failed,
};

/// Hands over the names in a folder. They are valid for the call only.
Listing listFolder(const std::string &path, bool followsLink,
                   const std::function<void(const FolderEntry &entry)> &receive);

/// Returns whether a folder of a local disk shows the state of the kernel and no files of anyone.
bool isOnPseudoFileSystem(const std::string &path);

} // namespace quillon
