#pragma once

#include <cstdint>

namespace quillon {

/// Two equal stamps say that a folder is still the same one and that no item has come or gone.
struct FolderStamp
{
    std::uint64_t device = 0;
    /// The number is 0 where the file system gave no stamp.
    std::uint64_t inode = 0;
    /// The change time is in nanoseconds since 1970, by the file system's clock.
    std::int64_t changed = 0;

    bool isKnown() const { return inode != 0; }
    bool operator==(const FolderStamp &) const = default;
    bool isSameFolder(const FolderStamp &other) const
    {
        return device == other.device && inode == other.inode;
    }
};

} // namespace quillon
