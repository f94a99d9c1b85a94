#include "platform/linux/disk/DirectoryRecords.h"

#include <cerrno>
#include <cstddef>
#include <cstring>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace quillon {

namespace {

constexpr std::size_t ROOM = std::size_t{64} * 1024;

bool isFolderByStatus(int folder, const char *name)
{
    struct stat status = {};
    return ::fstatat(folder, name, &status, AT_SYMLINK_NOFOLLOW | AT_NO_AUTOMOUNT) == 0 &&
           S_ISDIR(status.st_mode);
}

} // namespace

void readDirectoryRecords(std::span<const std::byte> records, int folder,
                          std::vector<FolderEntry> &entries)
{
    using Length = decltype(dirent64::d_reclen);
    using Type = decltype(dirent64::d_type);

    // The fields are copied one by one, since a record may be shorter than the structure.
    for (std::size_t at = 0; at + offsetof(dirent64, d_name) < records.size();) {
        const std::byte *record = records.data() + at;
        Length length = 0;
        Type type = DT_UNKNOWN;
        std::memcpy(&length, record + offsetof(dirent64, d_reclen), sizeof length);
        std::memcpy(&type, record + offsetof(dirent64, d_type), sizeof type);
        if (length <= offsetof(dirent64, d_name) || at + length > records.size())
            return;
        const char *name = reinterpret_cast<const char *>(record + offsetof(dirent64, d_name));
        const std::string_view text(name, ::strnlen(name, length - offsetof(dirent64, d_name)));
        at += length;
        if (text.empty() || text == "." || text == "..")
            continue;
        const bool isFolder =
            type == DT_DIR || (type == DT_UNKNOWN && isFolderByStatus(folder, name));
        entries.push_back({text, isFolder});
    }
}

int readFolder(int folder, FolderBatch &batch)
{
    batch.entries.clear();
    if (!batch.room)
        batch.room = std::make_unique<std::byte[]>(ROOM);
    while (batch.entries.empty()) {
        const ssize_t size = ::getdents64(folder, batch.room.get(), ROOM);
        if (size == 0)
            return 0;
        if (size > 0)
            readDirectoryRecords({batch.room.get(), static_cast<std::size_t>(size)}, folder,
                                 batch.entries);
        else if (errno != EINTR)
            return errno;
    }
    return 0;
}

} // namespace quillon
