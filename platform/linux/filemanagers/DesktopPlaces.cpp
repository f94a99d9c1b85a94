#include "platform/linux/filemanagers/DesktopPlaces.h"

#include "base/FileUri.h"
#include "platform/linux/disk/FileSystemKind.h"
#include "platform/linux/disk/MountPoints.h"
#include "platform/linux/disk/UserFolders.h"

#include <glib.h>

#include <algorithm>
#include <array>
#include <fstream>
#include <set>
#include <string_view>

namespace quillon {

namespace {

/// Systems mount the disks and shares of their users below these folders.
constexpr std::array<std::string_view, 4> PLACES_OF_DISKS = {"/media/", "/mnt/", "/run/media/",
                                                             "/srv/"};
/// File systems that hold people's files. Those of other machines count as well.
constexpr std::array<std::string_view, 12> DISK_TYPES = {"ext2",  "ext3",  "ext4",    "btrfs",
                                                         "xfs",   "f2fs",  "zfs",     "vfat",
                                                         "exfat", "ntfs3", "hfsplus", "fuseblk"};

constexpr std::array USER_FOLDERS = {G_USER_DIRECTORY_DESKTOP,  G_USER_DIRECTORY_DOCUMENTS,
                                     G_USER_DIRECTORY_DOWNLOAD, G_USER_DIRECTORY_MUSIC,
                                     G_USER_DIRECTORY_PICTURES, G_USER_DIRECTORY_VIDEOS};
/// The file of bookmarks, below the user's folder for settings. Each line holds an address and
/// perhaps a blank and a name.
constexpr std::string_view BOOKMARKS = "/gtk-3.0/bookmarks";

void addOnce(std::vector<std::string> &paths, const std::string &path)
{
    if (std::ranges::find(paths, path) == paths.end())
        paths.push_back(path);
}

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

std::vector<std::string> DesktopPlaces::folders() const
{
    std::vector<std::string> paths{userFolder("HOME", "")};
    for (const GUserDirectory folder : USER_FOLDERS) {
        if (const char *path = g_get_user_special_dir(folder))
            addOnce(paths, path);
    }
    std::ifstream bookmarks(userFolder("XDG_CONFIG_HOME", "/.config") + std::string(BOOKMARKS));
    for (std::string line; std::getline(bookmarks, line);) {
        if (const auto path = localPath(line.substr(0, line.find(' '))))
            addOnce(paths, *path);
    }
    return paths;
}

std::vector<std::string> DesktopPlaces::mountedDisks() const
{
    const auto all = mounts();
    return all ? disksAmong(*all) : std::vector<std::string>();
}

std::vector<std::string> DesktopPlaces::disksAmong(const std::vector<Mount> &mounts)
{
    std::set<std::string> disks;
    for (const Mount &mount : mounts) {
        if (isDisk(mount))
            disks.insert(mount.point);
    }
    return {disks.begin(), disks.end()};
}

} // namespace quillon
