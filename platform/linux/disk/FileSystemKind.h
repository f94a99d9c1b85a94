#pragma once

#include <cstdint>
#include <string_view>

namespace quillon {

/// What a statfs() type number says about a file system.
using FileSystemType = std::uint64_t;

/// Shows the state of the kernel and holds no files of anyone: proc, sysfs, cgroup and their kind.
/// A place where autofs would mount something is one too: looking into it would mount it.
bool isPseudoFileSystem(FileSystemType type);

/// The name of the type that stands in the table of mounts where something is mounted once somebody
/// looks into it.
inline constexpr std::string_view AUTOMOUNT_TYPE = "autofs";

/// Changes may be made by another machine or a program behind it, and the system here is not told
/// of them: NFS, SMB, FUSE and their kind. Goes by the name of the type, as it stands in the table
/// of mounts, since a server that is gone does not answer statfs().
bool isRemoteFileSystem(std::string_view typeName);

/// A folder's link count is exactly two and one for each of its subfolders, as long as it is not
/// one, which these file systems use for "too many to count".
bool countsSubfoldersAsLinks(FileSystemType type);

} // namespace quillon
