#include "platform/linux/filemanagers/DesktopPlaces.h"

#include "platform/linux/disk/FileSystemKind.h"
#include "platform/linux/disk/MountPoints.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace quillon {

namespace {

/// Systems mount the disks and shares of their users below these folders.
constexpr std::array<std::string_view, 4> PLACES_OF_DISKS = {"/media/", "/mnt/", "/run/media/",
                                                             "/srv/"};
/// File systems that hold the files of people. Those of other machines count as well.
constexpr std::array<std::string_view, 12> DISK_TYPES = {"ext2",  "ext3",  "ext4",    "btrfs",
                                                         "xfs",   "f2fs",  "zfs",     "vfat",
                                                         "exfat", "ntfs3", "hfsplus", "fuseblk"};

bool isDisk(const Mount &mount)
{
    const std::string_view point = mount.point;
    const auto isAbove = [point](std::string_view place) {
        return point.starts_with(place) || point == place.substr(0, place.size() - 1);
    };
    return std::ranges::any_of(PLACES_OF_DISKS, isAbove) &&
           (std::ranges::find(DISK_TYPES, mount.type) != DISK_TYPES.end() ||
            isRemoteFileSystem(mount.type));
}

} // namespace

std::vector<std::string> DesktopPlaces::mountedDisks() const
{
    const auto all = mounts();
    return all ? disksAmong(*all) : std::vector<std::string>();
}

std::vector<std::string> DesktopPlaces::disksAmong(const std::vector<Mount> &mounts)
{
    std::vector<std::string> disks;
    for (const Mount &mount : mounts) {
        if (isDisk(mount))
            disks.push_back(mount.point);
    }
    std::ranges::sort(disks);
    disks.erase(std::ranges::unique(disks).begin(), disks.end());
    return disks;
}

} // namespace quillon
