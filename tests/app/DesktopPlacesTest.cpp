#include "platform/linux/filemanagers/DesktopPlaces.h"

#include "platform/linux/disk/MountPoints.h"
#include "tests/support/TemporaryFolder.h"

#include <QByteArray>
#include <QScopeGuard>

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

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

TEST(DesktopPlaces, offersTheHomeFolderAndTheBookmarks)
{
    const TemporaryFolder disk;
    disk.writeFile("gtk-3.0/bookmarks", "file:///srv/a%20b Work\nsftp://host/x\n" +
                                            ("file://" + disk.path("home")) + "\nfile:///last\n");
    const auto restore = qScopeGuard([config = qgetenv("XDG_CONFIG_HOME"), home = qgetenv("HOME")] {
        qputenv("XDG_CONFIG_HOME", config);
        qputenv("HOME", home);
    });
    qputenv("XDG_CONFIG_HOME", disk.path().c_str());
    qputenv("HOME", disk.path("home").c_str());
    const std::vector<std::string> folders = DesktopPlaces().folders();
    EXPECT_EQ(folders.front(), disk.path("home"));
    EXPECT_THAT(folders, testing::IsSupersetOf({std::string("/srv/a b"), std::string("/last")}));
    EXPECT_EQ(std::ranges::count(folders, disk.path("home")), 1);
}

} // namespace quillon
