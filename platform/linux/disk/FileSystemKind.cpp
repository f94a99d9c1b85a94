#include "platform/linux/disk/FileSystemKind.h"

#include <algorithm>
#include <array>

#include <linux/magic.h>
#include <sys/vfs.h>

namespace quillon {

namespace {

// linux/magic.h leaves these numbers out.
constexpr FileSystemType CONFIGFS = 0x62656570;
constexpr FileSystemType FUSECTL = 0x65735543;
constexpr FileSystemType MQUEUE = 0x19800202;
constexpr FileSystemType RPC_PIPEFS = 0x67596969;

constexpr std::array PSEUDO{
    FileSystemType{PROC_SUPER_MAGIC},
    FileSystemType{SYSFS_MAGIC},
    FileSystemType{CGROUP_SUPER_MAGIC},
    FileSystemType{CGROUP2_SUPER_MAGIC},
    FileSystemType{DEBUGFS_MAGIC},
    FileSystemType{TRACEFS_MAGIC},
    FileSystemType{SECURITYFS_MAGIC},
    FileSystemType{SELINUX_MAGIC},
    FileSystemType{SMACK_MAGIC},
    FileSystemType{BPF_FS_MAGIC},
    FileSystemType{PSTOREFS_MAGIC},
    FileSystemType{EFIVARFS_MAGIC},
    FileSystemType{DEVPTS_SUPER_MAGIC},
    FileSystemType{HUGETLBFS_MAGIC},
    FileSystemType{BINFMTFS_MAGIC},
    FileSystemType{NSFS_MAGIC},
    FileSystemType{RDTGROUP_SUPER_MAGIC},
    FileSystemType{AUTOFS_SUPER_MAGIC},
    CONFIGFS,
    FUSECTL,
    MQUEUE,
    RPC_PIPEFS,
};

// A local disk that a FUSE program mounts ("fuseblk") changes only through that mount, so it is not
// in this list.
constexpr std::array<std::string_view, 23> REMOTE{
    "nfs",  "nfs4",  "cifs",   "smb3",     "smbfs",    "9p",     "ceph",   "afs",
    "coda", "fuse",  "ncpfs",  "virtiofs", "lustre",   "vboxsf", "prl_fs", "vmhgfs",
    "gfs2", "ocfs2", "beegfs", "gpfs",     "orangefs", "pvfs2",  "acfs"};

constexpr FileSystemType F2FS = 0xF2F52010;
constexpr FileSystemType XFS = 0x58465342;
constexpr std::array EXACT_LINKS{FileSystemType{EXT4_SUPER_MAGIC}, FileSystemType{TMPFS_MAGIC},
                                 F2FS, XFS};

constexpr FileSystemType BCACHEFS = 0xCA451A4E;
constexpr FileSystemType ZFS = 0x2FC12FC1;
constexpr std::array KEEPS_CHANGE_TIMES{FileSystemType{EXT4_SUPER_MAGIC},
                                        FileSystemType{BTRFS_SUPER_MAGIC},
                                        FileSystemType{TMPFS_MAGIC},
                                        F2FS,
                                        XFS,
                                        BCACHEFS,
                                        ZFS};

} // namespace

std::optional<FileSystemType> fileSystemOf(int file)
{
    struct statfs status = {};
    if (::fstatfs(file, &status) != 0)
        return std::nullopt;
    return static_cast<FileSystemType>(status.f_type);
}

bool isPseudoFileSystem(FileSystemType type)
{
    return std::ranges::find(PSEUDO, type) != PSEUDO.end();
}

bool isRemoteFileSystem(std::string_view typeName)
{
    return std::ranges::find(REMOTE, typeName) != REMOTE.end() || typeName.starts_with("fuse.");
}

bool countsSubfoldersAsLinks(FileSystemType type)
{
    return std::ranges::find(EXACT_LINKS, type) != EXACT_LINKS.end();
}

bool keepsChangeTimes(FileSystemType type)
{
    return std::ranges::find(KEEPS_CHANGE_TIMES, type) != KEEPS_CHANGE_TIMES.end();
}

} // namespace quillon
