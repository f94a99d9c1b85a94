#include "platform/linux/disk/FolderProbe.h"

#include "platform/linux/disk/DirectoryRecords.h"
#include "platform/linux/disk/FileSystemKind.h"
#include "platform/linux/disk/LongPath.h"
#include "platform/linux/disk/StatxStamp.h"

#include <cerrno>
#include <optional>

#include <fcntl.h>
#include <sys/stat.h>

namespace quillon {

namespace {

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
    thread_local FolderBatch batch;
    for (;;) {
        const int failure = readFolder(folder.get(), batch);
        if (batch.entries.empty())
            return failure == 0 ? Listing::complete : failureOf(failure);
        for (const FolderEntry &entry : batch.entries)
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
    const auto type = folder ? fileSystemOf(folder.get()) : std::nullopt;
    return type && isPseudoFileSystem(*type);
}

} // namespace quillon
