#pragma once

#include <cstdint>

namespace quillon {

/// Two equal stamps mean that a folder is still the same one and that no item has come or gone.
struct FolderStamp
{
    std::uint64_t device = 0;
    /// The inode number, or 0 when the file system gave no stamp.
    std::uint64_t inode = 0;
    /// The change time in nanoseconds since 1970, by the file system's clock.
    std::int64_t changed = 0;

    /// True when every change gives a folder another change time, so that an equal stamp means an
    /// unchanged folder even in another run of the program.
    bool isLasting = false;

    bool isKnown() const { return inode != 0; }
    bool operator==(const FolderStamp &other) const
    {
        return isSameFolder(other) && changed == other.changed;
    }
    bool isSameFolder(const FolderStamp &other) const
    {
        return device == other.device && inode == other.inode;
    }
};

} // namespace quillon
