#pragma once

#include "base/Mutex.h"
#include "platform/RecentItems.h"

#include <string>

namespace quillon {

/// Returns where the desktops keep the list: recently-used.xbel in the user's folder for data.
std::string standardRecentItemsPath();

/// The list in a bookmark file, which every program writes as it likes.
class XbelRecentItems final : public RecentItems
{
public:
    /// The list is in the file at this absolute path. The file need not exist.
    explicit XbelRecentItems(std::string file) : file_(std::move(file)) {}

    void add(const std::string &path) override EXCLUDES(mutex_);

private:
    enum class Outcome
    {
        written,
        /// Another program has written the file meanwhile.
        changedMeanwhile,
        leftAlone,
    };
    Outcome tryToAdd(const std::string &path) const REQUIRES(mutex_);

    const std::string file_;
    /// It is held from reading the file to writing it.
    mutable Mutex mutex_;
};

} // namespace quillon
