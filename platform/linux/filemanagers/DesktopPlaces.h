#pragma once

#include "platform/Places.h"

namespace quillon {

struct Mount;

/// Finds the places in the desktop's settings, in the bookmarks that file managers share, and in
/// the table of mounts.
class DesktopPlaces final : public Places
{
public:
    std::vector<std::string> folders() const override;
    std::vector<std::string> mountedDisks() const override;

    /// Returns those of the mounts that a user calls a disk or a share, in byte order.
    static std::vector<std::string> disksAmong(const std::vector<Mount> &mounts);
};

} // namespace quillon
