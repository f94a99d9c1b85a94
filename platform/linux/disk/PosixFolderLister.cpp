#include "platform/linux/disk/PosixFolderLister.h"

#include "base/PathText.h"
#include "platform/linux/disk/DirectoryRecords.h"
#include "platform/linux/disk/FileSystemKind.h"
#include "platform/linux/disk/FolderProbe.h"
#include "platform/linux/disk/LongPath.h"
#include "platform/linux/disk/MountPoints.h"
#include "platform/linux/disk/StatxStamp.h"

#include <cerrno>
#include <optional>
#include <unordered_set>
#include <utility>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace quillon {

namespace {

constexpr int OPEN_FOLDER = O_RDONLY | O_DIRECTORY | O_CLOEXEC;

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

Descriptor openLong(const std::string &path)
{
    const auto place = shorten(path);
    return place ? openAt(place->folder.get(), place->path, OPEN_FOLDER) : Descriptor();
}

/// The last names of all mount points. Only a folder of such a name can be the root of another file
/// system, so only there it is worth asking for the file system.
class MountNames
{
public:
    MountNames()
    {
        const auto points = mountPoints();
        known_ = points.has_value();
        if (!points)
            return;
        for (const std::string &point : *points)
            names_.emplace(lastComponent(point));
    }
    bool mayBeMountPoint(const std::string &name) const { return !known_ || names_.contains(name); }

private:
    bool known_ = false;
    std::unordered_set<std::string> names_;
};

/// The terms that all folders opened from one root share.
struct Terms
{
    FolderLister::Wanted wanted = FolderLister::Wanted::everything;
    uid_t user = ::geteuid();
    MountNames mountNames;
};

/// The file system that was mounted last on the way to a folder. The folder itself may be on a
/// different one, such as a subvolume.
struct Device
{
    unsigned int major = 0;
    unsigned int minor = 0;
    bool exactLinks = false;
    bool changeTimes = false;

    bool holds(const struct statx &status) const
    {
        return status.stx_dev_major == major && status.stx_dev_minor == minor;
    }
};

std::optional<struct statx> statusOf(int folder, const char *name, int flags)
{
    struct statx status = {};
    constexpr unsigned int MASK = STATX_TYPE | STATX_MODE | STATX_NLINK | STATX_UID | STATX_STAMP;
    if (::statx(folder, name, flags | AT_NO_AUTOMOUNT, MASK, &status) != 0)
        return std::nullopt;
    return status;
}

Device deviceOf(const Descriptor &folder)
{
    const auto status = statusOf(folder.get(), "", AT_EMPTY_PATH);
    const auto type = fileSystemOf(folder.get());
    if (!status || !type)
        return {};
    return {status->stx_dev_major, status->stx_dev_minor, countsSubfoldersAsLinks(*type),
            keepsChangeTimes(*type)};
}

FolderKind kindAt(int folder, const char *name)
{
    const auto status = statusOf(folder, name, AT_SYMLINK_NOFOLLOW);
    if (!status)
        return meansAbsence(errno) ? FolderKind::nothing : FolderKind::unknown;
    return S_ISDIR(status->stx_mode) ? FolderKind::folder : FolderKind::other;
}

class PosixOpenFolder final : public OpenFolder
{
public:
    PosixOpenFolder(Descriptor folder, std::shared_ptr<const Terms> terms, Device device)
        : folder_(std::move(folder)), terms_(std::move(terms)), device_(device)
    {}

    bool read(FolderBatch &batch, std::error_code &error) override;
    std::unique_ptr<OpenFolder> open(const std::string &name,
                                     std::error_code &error) const override;
    FolderKind kind(const std::string &name) const override;
    FolderStamp stamp() const override;
    FolderStamp childStamp(const std::string &name) const override;

private:
    FolderStamp stampFrom(const std::optional<struct statx> &status) const;
    bool isOnPseudoFileSystem(const std::string &name) const;
    bool isReadableLeaf(const struct statx &status) const;

    Descriptor folder_;
    std::shared_ptr<const Terms> terms_;
    Device device_;
};

bool PosixOpenFolder::read(FolderBatch &batch, std::error_code &error)
{
    const int failure = readFolder(folder_.get(), batch);
    error.clear();
    // A removed folder that is still open, or still mounted elsewhere, is empty.
    if (failure != ENOENT)
        error.assign(failure, std::generic_category());
    return !batch.entries.empty();
}

bool PosixOpenFolder::isOnPseudoFileSystem(const std::string &name) const
{
    // O_DIRECTORY would make autofs mount something.
    const Descriptor child = openAt(folder_.get(), name.c_str(), O_PATH | O_NOFOLLOW | O_CLOEXEC);
    const auto type = child ? fileSystemOf(child.get()) : std::nullopt;
    return type && isPseudoFileSystem(*type);
}

/// An unreadable folder does not count as a leaf, since only opening it reports the error. Where
/// the rights of the group and of others differ, an access list may decide.
bool PosixOpenFolder::isReadableLeaf(const struct statx &status) const
{
    constexpr unsigned int BOTH = S_IRGRP | S_IROTH;
    if (!device_.exactLinks || !device_.holds(status) || status.stx_nlink != 2 ||
        !S_ISDIR(status.stx_mode))
        return false;
    return terms_->user == 0 || (terms_->user == status.stx_uid ? (status.stx_mode & S_IRUSR) != 0
                                                                : (status.stx_mode & BOTH) == BOTH);
}

std::unique_ptr<OpenFolder> PosixOpenFolder::open(const std::string &name,
                                                  std::error_code &error) const
{
    error.clear();
    const bool mayBeMountPoint = terms_->mountNames.mayBeMountPoint(name);
    if (mayBeMountPoint && isOnPseudoFileSystem(name))
        return nullptr;
    const bool leavesCount = terms_->wanted == FolderLister::Wanted::subfolders;
    if (leavesCount && device_.exactLinks) {
        const auto status = statusOf(folder_.get(), name.c_str(), AT_SYMLINK_NOFOLLOW);
        if (status && isReadableLeaf(*status))
            return nullptr;
    }
    Descriptor child = openAt(folder_.get(), name.c_str(), OPEN_FOLDER | O_NOFOLLOW);
    if (!child) {
        error = lastError();
        return nullptr;
    }
    const Device device = mayBeMountPoint ? deviceOf(child) : device_;
    return std::make_unique<PosixOpenFolder>(std::move(child), terms_, device);
}

FolderKind PosixOpenFolder::kind(const std::string &name) const
{
    return kindAt(folder_.get(), name.c_str());
}

FolderStamp PosixOpenFolder::stamp() const
{
    return stampFrom(statusOf(folder_.get(), "", AT_EMPTY_PATH));
}

FolderStamp PosixOpenFolder::childStamp(const std::string &name) const
{
    if (terms_->mountNames.mayBeMountPoint(name))
        return {};
    return stampFrom(statusOf(folder_.get(), name.c_str(), AT_SYMLINK_NOFOLLOW));
}

FolderStamp PosixOpenFolder::stampFrom(const std::optional<struct statx> &status) const
{
    if (!status || !S_ISDIR(status->stx_mode))
        return {};
    FolderStamp stamp = stampOf(*status);
    stamp.isLasting = device_.changeTimes && device_.holds(*status);
    return stamp;
}

} // namespace

std::unique_ptr<OpenFolder> PosixFolderLister::open(const std::string &path, Wanted wanted,
                                                    std::error_code &error)
{
    error.clear();
    Descriptor folder = openLong(path);
    if (!folder) {
        error = lastError();
        return nullptr;
    }
    const auto type = fileSystemOf(folder.get());
    if (type && isPseudoFileSystem(*type))
        return nullptr;
    auto terms = std::make_shared<Terms>();
    terms->wanted = wanted;
    const Device device = deviceOf(folder);
    return std::make_unique<PosixOpenFolder>(std::move(folder), std::move(terms), device);
}

FolderLister::Kind PosixFolderLister::kind(const std::string &path)
{
    return probeFolder(path, false).kind;
}

} // namespace quillon
