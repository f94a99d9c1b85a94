#pragma once

#include "platform/FolderLister.h"

namespace quillon {

/// Lists folders by system calls relative to the folder above, so that the length of a path does
/// not matter and no link is ever followed on the way down.
class PosixFolderLister final : public FolderLister
{
public:
    std::unique_ptr<OpenFolder> open(const std::string &path, Wanted wanted,
                                     std::error_code &error) override;
    Kind kind(const std::string &path) override;
};

} // namespace quillon
