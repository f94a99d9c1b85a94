#include "platform/linux/filemanagers/DesktopPlaces.h"

#include "platform/linux/disk/MountPoints.h"

#include <gmock/gmock.h>

namespace quillon {

using testing::ElementsAre;

TEST(DesktopPlaces, offersTheDisksAndSharesOfPeople)
{
    const auto mounts = parseMounts(R"(21 1 8:1 / / rw - ext4 /dev/sda1 rw
22 21 0:5 / /proc rw - proc proc rw
23 21 8:2 / /boot/efi rw - vfat /dev/sda2 rw
24 21 0:40 / /mnt/nas rw - nfs4 nas:/all rw
25 21 8:3 / /run/media/alex/Photos\0402024 rw - exfat /dev/sdb1 rw
26 21 0:44 / /media/alex/tmp rw - tmpfs tmpfs rw
27 21 8:4 / /mnt rw - btrfs /dev/sdc1 rw
28 21 8:5 / /mntx rw - btrfs /dev/sdd1 rw
29 21 8:4 / /mnt rw - btrfs /dev/sdc1 rw
)");
    EXPECT_THAT(DesktopPlaces::disksAmong(mounts),
                ElementsAre("/mnt", "/mnt/nas", "/run/media/alex/Photos 2024"));
}

} // namespace quillon
