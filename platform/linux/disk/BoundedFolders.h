#pragma once

#include "base/BoundedCalls.h"
#include "platform/FolderIdentity.h"
#include "platform/FolderLister.h"

namespace quillon {

/// The time in which a folder has to say whether it exists. A sleeping disk may need longer. Its
/// folders then count as unanswered, and the caller asks again later.
inline constexpr std::chrono::seconds PRESENCE_PATIENCE{2};
/// The time in which a file system has to say what is at one path.
inline constexpr std::chrono::seconds KIND_PATIENCE{5};

/// Returns the mount point of the remote file system that a path is on, judged by the path as it is
/// written. Returns the path itself if it is on a local one. Asks no file system.
std::string remoteDiskOf(const std::string &path);

/// Asks another FolderIdentity for a limited time. A folder whose file system does not answer in
/// time is unanswered. The other object outlives even the calls that have been given up.
class BoundedFolderIdentity final : public FolderIdentity
{
public:
    BoundedFolderIdentity(const FolderIdentity &folders, BoundedCalls &calls,
                          std::chrono::milliseconds patience = PRESENCE_PATIENCE)
        : folders_(folders), calls_(calls), patience_(patience)
    {}

    FolderPresence presence(const std::string &path) const override;
    std::optional<FolderId> identify(const std::string &path) const override;
    std::optional<std::string> find(const std::string &parent, const FolderId &id) const override;

private:
    const FolderIdentity &folders_;
    BoundedCalls &calls_;
    const std::chrono::milliseconds patience_;
};

/// Asks another FolderLister for a limited time what is at a path. If it does not answer in time,
/// the kind is unknown. Opening and reading have no limit, since a crawl has limits of its own.
class BoundedFolderLister final : public FolderLister
{
public:
    BoundedFolderLister(FolderLister &folders, BoundedCalls &calls,
                        std::chrono::milliseconds patience = KIND_PATIENCE)
        : folders_(folders), calls_(calls), patience_(patience)
    {}

    std::unique_ptr<OpenFolder> open(const std::string &path, Wanted wanted,
                                     std::error_code &error) override
    {
        return folders_.open(path, wanted, error);
    }
    Kind kind(const std::string &path) override;

private:
    FolderLister &folders_;
    BoundedCalls &calls_;
    const std::chrono::milliseconds patience_;
};

} // namespace quillon
