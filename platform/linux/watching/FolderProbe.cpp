#include "platform/linux/watching/FolderProbe.h"

#include "platform/linux/disk/DirectoryRecords.h"
#include "platform/linux/disk/FileSystemKind.h"
#include "platform/linux/disk/LongPath.h"
#include "platform/linux/disk/StatxStamp.h"

#include <cerrno>
#include <memory>
#include <span>
#include <vector>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/vfs.h>

namespace quillon {

namespace {

constexpr std::size_t LISTING_ROOM = std::size_t{64} * 1024;

Listing failureOf(int error)
{
    return meansAbsence(error) ? Listing::gone : Listing::failed;
}

FolderProbe failedProbe(int error)
{
    using enum FolderKind;
    return {meansAbsence(error) ? nothing : unknown, {}};
}

} // namespace

FolderProbe probeFolder(const std::string &path, bool followsLink)
{
    const auto place = shorten(path);
    if (!place)
        return failedProbe(errno);
    struct statx status = {};
    // The attributes are read as the file system keeps them, since a cached answer would hide a
    // server's changes.
    const int flags =
        AT_NO_AUTOMOUNT | AT_STATX_SYNC_AS_STAT | (followsLink ? 0 : AT_SYMLINK_NOFOLLOW);
    if (::statx(place->folder.get(), place->path, flags, STATX_TYPE | STATX_STAMP, &status) != 0)
        return failedProbe(errno);
    if (!S_ISDIR(status.stx_mode))
        return {FolderLister::Kind::other, {}};
    return {FolderLister::Kind::folder, stampOf(status)};
}

Listing listFolder(const std::string &path, bool followsLink,
                   const std::function<void(const FolderEntry &entry)> &receive)
{
    const auto place = shorten(path);
    if (!place)
        return failureOf(errno);
    const Descriptor folder =
        openAt(place->folder.get(), place->path,
               O_RDONLY | O_DIRECTORY | O_CLOEXEC | (followsLink ? 0 : O_NOFOLLOW));
    if (!folder)
        return failureOf(errno);
    thread_local auto room = std::make_unique<std::byte[]>(LISTING_ROOM);
    std::vector<FolderEntry> entries;
    for (;;) {
        const ssize_t size = ::getdents64(folder.get(), room.get(), LISTING_ROOM);
        if (size < 0 && errno == EINTR)
            continue;
        if (size < 0)
            return failureOf(errno);
        if (size == 0)
            return Listing::complete;
        entries.clear();
        readDirectoryRecords({room.get(), static_cast<std::size_t>(size)}, folder.get(), entries);
        for (const FolderEntry &entry : entries)
            receive(entry);
    }
}

bool isOnPseudoFileSystem(const std::string &path)
{
    const auto place = shorten(path);
    if (!place)
        return false;
    // O_DIRECTORY is left out, since with it the call could mount something.
    const Descriptor folder = openAt(place->folder.get(), place->path, O_PATH | O_CLOEXEC);
    struct statfs status = {};
    return folder && ::fstatfs(folder.get(), &status) == 0 &&
           isPseudoFileSystem(static_cast<FileSystemType>(status.f_type));
}

} // namespace quillon
