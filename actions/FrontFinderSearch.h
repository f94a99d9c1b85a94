#pragma once

#include "base/Mutex.h"
#include "matching/FrontItems.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace quillon {

class AppleScriptRunner;
class FileManager;
class Preferences;
class TaskQueue;

/// Fetches what the file manager window in front shows, and keeps it for searches.
class FrontFinderSearch final : public FrontItemsSource
{
public:
    struct Services
    {
        const AppleScriptRunner &appleScriptRunner;
        const FileManager &fileManager;
        const Preferences &preferences;
        /// The queue on which the file manager is asked. It must end before this object does.
        TaskQueue &background;
        TaskQueue &main;
    };

    explicit FrontFinderSearch(Services services);

    bool isFinderFrontmost() const override;
    FrontItems frontItems() const override EXCLUDES(mutex_);

    /// Returns the paths of the items as the file manager lists them; the paths of folders end with
    /// a slash. The list is empty when no file manager is in front or when the user has turned this
    /// off. It is called on a worker thread, since it takes as long as the file manager does.
    std::vector<std::string> getPathsInCurrentFinderWindow() const;

    // These are called on the main thread.

    /// Fetches the items in the background, replaces the items of the last refresh and calls back
    /// on the main thread. If another refresh or forget() follows before the end, this refresh
    /// keeps nothing and does not call back.
    void refresh(std::function<void()> completion);
    /// Drops the items until the next refresh.
    void forget() EXCLUDES(mutex_);

private:
    void keep(FrontItems items) EXCLUDES(mutex_);

    Services services_;
    /// The number of the newest refresh, which only the main thread uses.
    std::uint64_t generation_ = 0;

    mutable Mutex mutex_;
    FrontItems items_ GUARDED_BY(mutex_);
};

} // namespace quillon
