#include "platform/linux/disk/StatxFolderIdentity.h"

#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon {
namespace {

bool isFolderAt(int folder, const char *name)
{
    struct stat status = {};
    return ::fstatat(folder, name, &status, 0) == 0 && S_ISDIR(status.st_mode);
}

/// Identifies what is at the name, without following a link.
std::optional<FolderId> identifyAt(int folder, const char *name)
{
    struct statx status = {};
    constexpr unsigned WANTED = STATX_INO | STATX_BTIME;
    if (::statx(folder, name, AT_SYMLINK_NOFOLLOW | AT_STATX_DONT_SYNC, WANTED, &status) != 0)
        return std::nullopt;
    if ((status.stx_mask & WANTED) != WANTED)
        return std::nullopt;
    constexpr std::int64_t NANOSECONDS = 1'000'000'000;
    return FolderId{.inode = status.stx_ino,
                    .birthTime = status.stx_btime.tv_sec * NANOSECONDS + status.stx_btime.tv_nsec};
}

bool mayBeFolder(const dirent &entry)
{
    return entry.d_type == DT_DIR || entry.d_type == DT_LNK || entry.d_type == DT_UNKNOWN;
}

} // namespace

FolderPresence StatxFolderIdentity::presence(const std::string &path) const
{
    if (!isFolderAt(AT_FDCWD, path.c_str()))
        return FolderPresence::away;
    return ::faccessat(AT_FDCWD, path.c_str(), R_OK | X_OK, AT_EACCESS) == 0
               ? FolderPresence::there
               : FolderPresence::unreadable;
}

std::optional<FolderId> StatxFolderIdentity::identify(const std::string &path) const
{
    if (!isFolderAt(AT_FDCWD, path.c_str()))
        return std::nullopt;
    return identifyAt(AT_FDCWD, path.c_str());
}

std::optional<std::string> StatxFolderIdentity::find(const std::string &parent,
                                                     const FolderId &id) const
{
    const std::unique_ptr<DIR, int (*)(DIR *)> folder(::opendir(parent.c_str()), ::closedir);
    if (!folder)
        return std::nullopt;
    const std::string prefix = parent == "/" ? parent : parent + "/";
    const int handle = ::dirfd(folder.get());
    // The entry's own inode number is not used, since on some stacked and remote file systems it
    // differs from the number in the status.
    while (const dirent *entry = ::readdir(folder.get())) {
        const std::string name = static_cast<const char *>(entry->d_name);
        if (name == "." || name == ".." || !mayBeFolder(*entry))
            continue;
        if (identifyAt(handle, name.c_str()) == id && isFolderAt(handle, name.c_str()))
            return prefix + name;
    }
    return std::nullopt;
}

} // namespace quillon
