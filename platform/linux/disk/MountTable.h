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

/// The points where other file systems begin, and which of them are remote. Not locked.
class MountTable
{
public:
    using IsRemote = std::function<bool(std::string_view typeName)>;

    explicit MountTable(IsRemote isRemote) : isRemote_(std::move(isRemote)) { reload(); }

    /// Reads the table again; returns the points where something has come or gone. Absent when the
    /// system did not answer.
    std::optional<std::vector<std::string>> reload();
    /// Returns whether any mount point has this name, so that it is worth asking about the path.
    bool mayBeMountPoint(std::string_view name) const { return names_.contains(name); }
    /// Returns whether a remote file system is mounted at the path, which is free of links.
    bool isRemoteMountPoint(const std::string &path) const;
    /// What begins at a place.
    enum class Border
    {
        none,
        remote,
        /// Something is mounted there as soon as somebody looks into it.
        automount,
    };
    /// What begins at a name in a folder, whose path may contain links. Absent when the disk did
    /// not answer for the folder.
    std::optional<Border> borderAt(const std::string &folder, std::string_view name) const;
    /// Returns whether the path, free of links, is on a remote file system.
    bool isRemote(std::string_view path) const;

private:
    const IsRemote isRemote_;
    /// The type of what is on top at each point.
    std::unordered_map<std::string, std::string> types_;
    std::set<std::string, std::less<>> names_;
    std::vector<Mount> mounts_;
};

} // namespace quillon
