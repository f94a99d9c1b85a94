#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// Where something is mounted, as this process sees it; absent when the kernel does not tell.
std::optional<std::vector<std::string>> mountPoints();

/// The mount points in the text of /proc/self/mountinfo. Lines that make no sense are left out.
std::vector<std::string> parseMountPoints(const std::string &mountInfo);

} // namespace quillon
