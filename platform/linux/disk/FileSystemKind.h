#pragma once

#include <cstdint>
#include <string_view>

namespace quillon {

/// What a statfs() type number says about a file system.
using FileSystemType = std::uint64_t;

/// Returns whether the file system shows the state of the kernel and holds nobody's files, as proc,
/// sysfs and cgroup do. Includes autofs, where looking into a folder would mount something.
bool isPseudoFileSystem(FileSystemType type);

/// The type that the table of mounts gives for a place where something is mounted once somebody
/// looks into it.
inline constexpr std::string_view AUTOMOUNT_TYPE = "autofs";

/// Returns whether another machine, or a program behind the file system, may change it without the
/// kernel here being told, as with NFS, SMB and FUSE. Takes the name of the type from the table of
/// mounts, since statfs() does not return when a server is gone.
bool isRemoteFileSystem(std::string_view typeName);

/// Returns whether a folder's link count is two and one more for each of its subfolders. These file
/// systems give a count of one where there are too many to count.
bool countsSubfoldersAsLinks(FileSystemType type);

/// Returns whether every change of a folder gives it another change time, whoever makes the change.
/// That is not so where another machine keeps the time, nor where a folder is put together from
/// several, as by overlayfs.
bool keepsChangeTimes(FileSystemType type);

} // namespace quillon
