#pragma once

#include "base/BoundedCalls.h"
#include "platform/FolderIdentity.h"
#include "platform/FolderLister.h"

namespace quillon {

/// How long a folder may take to say whether it is there. A disk that sleeps may need longer: then
/// its folders count as unanswered, and whoever wants them asks again later.
inline constexpr std::chrono::seconds PRESENCE_PATIENCE{2};
/// How long a file system may take to say what stands at one path.
inline constexpr std::chrono::seconds KIND_PATIENCE{5};

/// Returns the mount point of the remote file system that a path is on, by the path as it is
/// written; the path itself where that is on a local one. Asks no file system.
std::string remoteDiskOf(const std::string &path);

/// Asks another one, which outlives also the calls that are waited for no more. A folder of a file
/// system that does not answer in time is unanswered.
class PatientFolderIdentity final : public FolderIdentity
{
public:
    PatientFolderIdentity(const FolderIdentity &folders, BoundedCalls &calls,
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

/// The same for kind(), which then answers that nothing is known. Opening and reading take as long
/// as they do with the other one: a crawl looks after itself.
class PatientFolderLister final : public FolderLister
{
public:
    PatientFolderLister(FolderLister &folders, BoundedCalls &calls,
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
