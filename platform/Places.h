#pragma once

#include <string>
#include <vector>

namespace quillon {

/// Names the folders that the desktop offers to its user everywhere. Any thread; what is asked may
/// read small files, but waits for no disk of the folders.
class Places
{
public:
    Places() = default;
    virtual ~Places() = default;
    Places(const Places &) = delete;
    Places &operator=(const Places &) = delete;

    /// Returns the folders where other disks and shares are mounted now, by their absolute paths.
    virtual std::vector<std::string> mountedDisks() const = 0;
};

} // namespace quillon
