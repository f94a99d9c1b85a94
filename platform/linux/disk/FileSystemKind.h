#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace quillon {

/// The type number that statfs() gives for a file system.
using FileSystemType = std::uint64_t;

/// Returns the type of the file system that an open file or folder is on, or nothing when the
/// system does not say.
std::optional<FileSystemType> fileSystemOf(int file);

/// Returns whether the file system shows the state of the kernel and holds nobody's files, as proc,
/// sysfs and cgroup do. This includes autofs, where opening a folder would mount something.
bool isPseudoFileSystem(FileSystemType type);

/// The type in the table of mounts for a place where something is mounted as soon as it is
/// accessed.
inline constexpr std::string_view AUTOMOUNT_TYPE = "autofs";

/// Returns whether another machine, or a program behind the file system, may change it without the
/// kernel here noticing, as with NFS, SMB and FUSE. The name of the type comes from the table of
/// mounts, since statfs() does not return when a server is gone.
bool isRemoteFileSystem(std::string_view typeName);

/// Returns whether a folder's link count is two and one more for each of its subfolders. These file
/// systems give a count of one when there are too many to count.
bool countsSubfoldersAsLinks(FileSystemType type);

/// Returns whether every change of a folder gives it another change time, whoever makes the change.
/// That is not so when another machine keeps the time, nor when a folder is composed of several, as
/// on overlayfs.
bool keepsChangeTimes(FileSystemType type);

} // namespace quillon
