#pragma once

#include <string>

namespace quillon {

/// The desktop's list of the files and folders that were opened last, in any program. File choosers
/// show it.
class RecentItems
{
public:
    RecentItems() = default;
    virtual ~RecentItems() = default;
    RecentItems(const RecentItems &) = delete;
    RecentItems &operator=(const RecentItems &) = delete;

    /// Enters the file or folder at the absolute path as opened now, unless the user has told the
    /// desktop to remember nothing. Waits for the disk, so it is not called on the main thread. Any
    /// other thread may call it. A list that cannot be read or written stays as it is.
    virtual void add(const std::string &path) = 0;
};

} // namespace quillon
