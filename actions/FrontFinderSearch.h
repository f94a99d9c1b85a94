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

/// Fetches what the file manager window in front shows and keeps it for searches.
class FrontFinderSearch final : public FrontItemsSource
{
public:
    struct Services
    {
        const AppleScriptRunner &appleScriptRunner;
        const FileManager &fileManager;
        const Preferences &preferences;
        /// Where the file manager is asked. Must end before this object does.
        TaskQueue &background;
        TaskQueue &main;
    };

    explicit FrontFinderSearch(Services services);

    bool isFinderFrontmost() const override;
    FrontItems frontItems() const override EXCLUDES(mutex_);

    /// The paths of the items as the file manager lists them, those of folders with a trailing
    /// slash. Empty when none is in front or the user does not want it. Worker thread; takes as
    /// long as the file manager does.
    std::vector<std::string> getPathsInCurrentFinderWindow() const;

    // Main thread.

    /// Fetches the items in the background, replaces the items of the last refresh by them and
    /// calls back on the main thread. A refresh that is followed by another one or by forget()
    /// before it has ended keeps nothing and does not call back.
    void refresh(std::function<void()> completion);
    /// Drops the items until the next refresh.
    void forget() EXCLUDES(mutex_);

private:
    void keep(FrontItems items) EXCLUDES(mutex_);

    Services services_;
    /// Tells the newest refresh from older ones; main thread only.
    std::uint64_t generation_ = 0;

    mutable Mutex mutex_;
    FrontItems items_ GUARDED_BY(mutex_);
};

} // namespace quillon
