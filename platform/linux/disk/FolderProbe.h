#pragma once

#include "platform/FolderLister.h"
#include "platform/FolderStamp.h"

#include <functional>
#include <string>
#include <string_view>

namespace quillon {

/// Says what was found at a path.
struct FolderProbe
{
    FolderLister::Kind kind = FolderLister::Kind::nothing;
    /// The stamp, which is known only for a folder.
    FolderStamp stamp;

    bool isFolder() const { return kind == FolderLister::Kind::folder; }
    /// Returns true when the file system has not answered, so that nobody knows what is there.
    bool isUnknown() const { return kind == FolderLister::Kind::unknown; }
};

/// Examines an absolute path of any length without opening what is there.
FolderProbe probeFolder(const std::string &path, bool followsLink);

enum class Listing
{
    complete,
    /// The folder is gone, or is not a folder any more.
    gone,
    /// The folder may not be read, there are too few descriptors, or the disk fails. Another
    /// attempt may succeed later.
    failed,
};

/// Hands over the names in a folder, which are valid only during the call.
Listing listFolder(const std::string &path, bool followsLink,
                   const std::function<void(const FolderEntry &entry)> &receive);

/// Returns whether a folder of a local disk shows the state of the kernel and holds nobody's files.
bool isOnPseudoFileSystem(const std::string &path);

} // namespace quillon
