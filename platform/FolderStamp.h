#pragma once

#include <cstdint>

namespace quillon {

/// What tells that a folder is still the same one and that nothing has come to or gone from it.
struct FolderStamp
{
    std::uint64_t device = 0;
    /// 0 where no stamp could be had.
    std::uint64_t inode = 0;
    /// Nanoseconds since 1970 by the file system's clock.
    std::int64_t changed = 0;

    bool isKnown() const { return inode != 0; }
    bool operator==(const FolderStamp &) const = default;
    bool isSameFolder(const FolderStamp &other) const
    {
        return device == other.device && inode == other.inode;
    }
};

} // namespace quillon
