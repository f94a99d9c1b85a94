#include "platform/linux/disk/LongPath.h"

#include <climits>

#include <cerrno>
#include <utility>

#include <fcntl.h>

namespace quillon {

Descriptor openAt(int folder, const char *path, int flags)
{
    for (;;) {
        const int fd = ::openat(folder, path, flags);
        if (fd >= 0 || errno != EINTR)
            return Descriptor(fd);
    }
}

bool meansAbsence(int error)
{
    // A file system cannot hold a name that is too long for it.
    return error == ENOENT || error == ENOTDIR || error == ENAMETOOLONG;
}

std::optional<ShortPath> shorten(const std::string &path)
{
    Descriptor folder(AT_FDCWD);
    std::size_t begin = 0;
    while (path.size() - begin >= PATH_MAX) {
        const std::size_t end = path.rfind('/', begin + PATH_MAX - 2);
        if (end == std::string::npos || end <= begin) {
            errno = ENAMETOOLONG;
            return std::nullopt;
        }
        const std::string piece = path.substr(begin, end - begin);
        Descriptor next = openAt(folder.get(), piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC);
        if (!next)
            return std::nullopt;
        folder = std::move(next);
        begin = path.find_first_not_of('/', end);
        if (begin == std::string::npos)
            return ShortPath{std::move(folder), "."};
    }
    return ShortPath{std::move(folder), path.c_str() + begin};
}

} // namespace quillon
