#pragma once

#include "base/BoundedCalls.h"
#include "platform/FolderIdentity.h"
#include "platform/FolderLister.h"

namespace quillon {

/// How long a file system may take for one answer about one folder.
inline constexpr std::chrono::seconds FOLDER_PATIENCE{5};

/// Asks another one, which outlives also the calls that are waited for no more. A folder of a file
/// system that does not answer in time counts as one that is not there.
class PatientFolderIdentity final : public FolderIdentity
{
public:
    explicit PatientFolderIdentity(const FolderIdentity &folders,
                                   std::chrono::milliseconds patience = FOLDER_PATIENCE)
        : folders_(folders), calls_(patience)
    {}

    bool isFolder(const std::string &path) const override;
    bool isReadable(const std::string &path) const override;
    std::optional<FolderId> identify(const std::string &path) const override;
    std::optional<std::string> find(const std::string &parent, const FolderId &id) const override;

private:
    const FolderIdentity &folders_;
    mutable BoundedCalls calls_;
};

/// The same for kind(), which then answers that nothing is known. Opening and reading take as long
/// as they do with the other one: a crawl looks after itself.
class PatientFolderLister final : public FolderLister
{
public:
    explicit PatientFolderLister(FolderLister &folders,
                                 std::chrono::milliseconds patience = FOLDER_PATIENCE)
        : folders_(folders), calls_(patience)
    {}

    std::unique_ptr<OpenFolder> open(const std::string &path, Wanted wanted,
                                     std::error_code &error) override
    {
        return folders_.open(path, wanted, error);
    }
    Kind kind(const std::string &path) override;

private:
    FolderLister &folders_;
    BoundedCalls calls_;
};

} // namespace quillon
