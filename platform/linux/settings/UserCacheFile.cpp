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

struct OwnFile
{
    Descriptor descriptor;
    struct stat status = {};
};

/// Returns nothing for anything but a file that belongs to the user.
std::optional<OwnFile> openOwn(const std::filesystem::path &path)
{
    constexpr int FLAGS = O_RDONLY | O_CLOEXEC | O_NOFOLLOW | O_NONBLOCK;
    OwnFile file{Descriptor(uninterrupted([&] { return ::open(path.c_str(), FLAGS); }))};
    if (!file.descriptor || ::fstat(file.descriptor.get(), &file.status) != 0 ||
        !S_ISREG(file.status.st_mode) || file.status.st_uid != ::geteuid())
        return std::nullopt;
    return file;
}

} // namespace

std::string standardIndexPath()
{
    return userFolder("XDG_CACHE_HOME", "/.cache") + "/quillon/index";
}

std::optional<std::string> UserCacheFile::read() const
{
    const auto file = openOwn(path_);
    if (!file)
        return std::nullopt;
    std::string bytes(static_cast<std::size_t>(file->status.st_size), '\0');
    for (std::size_t done = 0; done < bytes.size();) {
        const ssize_t count = uninterrupted([&] {
            return ::read(file->descriptor.get(), bytes.data() + done, bytes.size() - done);
        });
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
    if (uninterrupted([&] { return ::rename(fresh->c_str(), path_.c_str()); }) == 0)
        return {};
    const std::error_code error = lastError();
    ::unlink(fresh->c_str());
    return error;
}

void UserCacheFile::confirm()
{
    if (const auto file = openOwn(path_))
        ::futimens(file->descriptor.get(), nullptr);
}

std::optional<std::chrono::system_clock::time_point> UserCacheFile::confirmedAt() const
{
    const auto file = openOwn(path_);
    if (!file)
        return std::nullopt;
    return std::chrono::system_clock::from_time_t(file->status.st_mtime);
}

} // namespace quillon
