#pragma once

#include "platform/FolderIdentity.h"

namespace quillon {

/// Asks statx() and reads parent folders.
class StatxFolderIdentity final : public FolderIdentity
{
public:
    bool isFolder(const std::string &path) const override;
    bool isReadable(const std::string &path) const override;
    std::optional<FolderId> identify(const std::string &path) const override;
    std::optional<std::string> find(const std::string &parent, const FolderId &id) const override;
};

} // namespace quillon
