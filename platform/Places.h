#pragma once

#include <string>
#include <vector>

namespace quillon {

/// Names the folders that the desktop offers its user everywhere. Any thread. A call may read small
/// files, but never waits for the disks of these folders.
class Places
{
public:
    Places() = default;
    virtual ~Places() = default;
    Places(const Places &) = delete;
    Places &operator=(const Places &) = delete;

    /// Returns the home folder, the user's own folders such as those for documents and downloads,
    /// and the bookmarks of the file manager, by their absolute paths and each once. Not all of
    /// them need be there.
    virtual std::vector<std::string> folders() const = 0;
    /// Returns the folders where other disks and shares are mounted now, by their absolute paths.
    virtual std::vector<std::string> mountedDisks() const = 0;
};

} // namespace quillon
