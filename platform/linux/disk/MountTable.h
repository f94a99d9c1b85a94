#pragma once

#include "platform/linux/disk/MountPoints.h"

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace quillon {

/// The points where other file systems begin, and which of them are remote. It has no lock of its
/// own.
class MountTable
{
public:
    using IsRemote = std::function<bool(std::string_view typeName)>;

    explicit MountTable(IsRemote isRemote) : isRemote_(std::move(isRemote)) { reload(); }

    /// Reads the table again and returns the points where something was mounted or unmounted.
    /// Returns nothing when the system did not answer.
    std::optional<std::vector<std::string>> reload();
    /// Returns whether any mount point has this name, so that it is worth asking about the path.
    bool mayBeMountPoint(std::string_view name) const { return names_.contains(name); }
    /// Returns whether a remote file system is mounted at the path, which is free of links.
    bool isRemoteMountPoint(const std::string &path) const;
    /// The kind of mount boundary at a place.
    enum class Boundary
    {
        none,
        remote,
        /// Something is mounted there as soon as the place is accessed.
        automount,
    };
    /// Returns the boundary at a name in a folder, whose path may contain links. Returns nothing
    /// when the disk did not answer for the folder.
    std::optional<Boundary> boundaryAt(const std::string &folder, std::string_view name) const;
    /// Returns whether the path, free of links, is on a remote file system.
    bool isRemote(std::string_view path) const;

private:
    const IsRemote isRemote_;
    /// The type of the topmost mount at each point.
    std::unordered_map<std::string, std::string> types_;
    std::set<std::string, std::less<>> names_;
    std::vector<Mount> mounts_;
};

} // namespace quillon
