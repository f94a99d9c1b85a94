#pragma once

#include "platform/FolderIdentity.h"

namespace quillon {

/// Identifies folders by statx(), and finds a renamed folder by reading its parent.
class StatxFolderIdentity final : public FolderIdentity
{
public:
    FolderPresence presence(const std::string &path) const override;
    std::optional<FolderId> identify(const std::string &path) const override;
    std::optional<std::string> find(const std::string &parent, const FolderId &id) const override;
};

} // namespace quillon
