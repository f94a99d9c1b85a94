#include "platform/linux/disk/PatientFolders.h"

namespace quillon {

bool PatientFolderIdentity::isFolder(const std::string &path) const
{
    return calls_.run([&folders = folders_, path] { return folders.isFolder(path); })
        .value_or(false);
}

bool PatientFolderIdentity::isReadable(const std::string &path) const
{
    return calls_.run([&folders = folders_, path] { return folders.isReadable(path); })
        .value_or(false);
}

std::optional<FolderId> PatientFolderIdentity::identify(const std::string &path) const
{
    return calls_.run([&folders = folders_, path] { return folders.identify(path); })
        .value_or(std::nullopt);
}

std::optional<std::string> PatientFolderIdentity::find(const std::string &parent,
                                                       const FolderId &id) const
{
    return calls_.run([&folders = folders_, parent, id] { return folders.find(parent, id); })
        .value_or(std::nullopt);
}

FolderLister::Kind PatientFolderLister::kind(const std::string &path)
{
    return calls_.run([&folders = folders_, path] { return folders.kind(path); })
        .value_or(Kind::unknown);
}

} // namespace quillon
