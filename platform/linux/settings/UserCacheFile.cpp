#include "platform/linux/settings/UserCacheFile.h"

#include "platform/linux/disk/Descriptor.h"
#include "platform/linux/disk/UserFolders.h"
#include "platform/linux/settings/FileSteps.h"

#include <cerrno>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon {

namespace {

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

} // namespace

std::string standardIndexPath()
{
    return userFolder("XDG_CACHE_HOME", "/.cache") + "/quillon/index";
}

std::optional<std::string> UserCacheFile::read() const
{
    constexpr int FLAGS = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    const Descriptor file(uninterrupted([&] { return ::open(path_.c_str(), FLAGS); }));
    struct stat status = {};
    if (!file || ::fstat(file.get(), &status) != 0 || !S_ISREG(status.st_mode) ||
        status.st_uid != ::geteuid())
        return std::nullopt;
    std::string bytes(static_cast<std::size_t>(status.st_size), '\0');
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = uninterrupted(
            [&] { return ::read(file.get(), bytes.data() + done, bytes.size() - done); });
        if (count <= 0)
            return std::nullopt;
        done += static_cast<std::size_t>(count);
    }
    return bytes;
}

std::error_code UserCacheFile::write(std::string_view bytes)
{
    if (!makeFolder(path_.parent_path()))
        return lastError();
    removeLeftovers(path_);
    const auto fresh = writeBeside(
        path_, QByteArray::fromRawData(bytes.data(), static_cast<qsizetype>(bytes.size())));
    if (!fresh)
        return lastError();
    if (::rename(fresh->c_str(), path_.c_str()) == 0)
        return {};
    const std::error_code error = lastError();
    ::unlink(fresh->c_str());
    return error;
}

} // namespace quillon
