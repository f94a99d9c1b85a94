#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon {

struct Mount
{
    /// The absolute path.
    std::string point;
    /// The name of the file system's type, such as "ext4".
    std::string type;
};

/// Returns what is mounted, as this process sees it, earlier mounts first. Returns nothing when the
/// kernel does not say.
std::optional<std::vector<Mount>> mounts();

/// Reads the text of /proc/self/mountinfo and leaves out lines that make no sense.
std::vector<Mount> parseMounts(const std::string &mountInfo);

/// Returns the places where something is mounted, as this process sees them. Returns nothing when
/// the kernel does not say.
std::optional<std::vector<std::string>> mountPoints();

} // namespace quillon
