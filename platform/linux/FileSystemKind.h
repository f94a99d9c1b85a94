#pragma once

#include <cstdint>

namespace quillon {

/// What a statfs() type number says about a file system.
using FileSystemType = std::uint64_t;

/// Shows the state of the kernel and holds no files of anyone: proc, sysfs, cgroup and their kind.
bool isPseudoFileSystem(FileSystemType type);

/// A folder's link count is exactly two and one for each of its subfolders, as long as it is not
/// one, which these file systems use for "too many to count".
bool countsSubfoldersAsLinks(FileSystemType type);

} // namespace quillon
