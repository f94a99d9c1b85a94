#pragma once

#include "base/InlineTaskQueue.h"
#include "core/SearchBase.h"
#include "ctl/ReadOnlySettings.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "matching/FuzzyMatchResult.h"
#include "matching/RecentAccessScore.h"
#include "platform/linux/disk/BoundedFolders.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "platform/linux/settings/UserCacheFile.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <optional>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class DefaultsStore;

/// The index of this process, for when the running application does not answer: the one that it
/// kept when it last ran, or one of folders that are crawled now.
class OwnIndex
{
public:
    enum class Source
    {
        keptOrDisk,
        disk,
    };

    /// The user's settings outlive this object.
    OwnIndex(const DefaultsStore &user, Source source);

    /// Chooses what is searched: these folders, as the user typed them, or without any those of the
    /// settings, else the home folder. Returns false, with a line on standard error, when a folder
    /// cannot be read, or when the settings have a mistake. Other folders than those that the user
    /// chose are not searched then. Hidden folders below those that the user typed are searched if
    /// that is wanted here, else where the settings say so.
    bool choose(const std::vector<std::string> &folders, bool withHidden = false);

    /// Takes the index that the application kept. Returns the time at which it was equal to the
    /// disk, or nothing when none is kept for these settings or none is wanted.
    std::optional<std::chrono::system_clock::time_point> restore();
    /// Crawls what was chosen until stop is requested. Each line about a folder that cannot be read
    /// is handed over, on any thread.
    void build(const std::function<void(const std::string &line)> &complain,
               const std::stop_token &stop = {});

    /// Returns what matches, best first, as find() of the application does. Safe during a build.
    std::vector<FuzzyMatchResult> find(std::string_view query, std::size_t top, MatchOrder order,
                                       bool inAnyOrder) const;
    /// Returns those of the most used paths that are indexed, most used first.
    std::vector<FuzzyMatchResult> mostUsed(std::size_t top) const;

private:
    ReadOnlySettings settings_;
    StatxFolderIdentity disk_;
    BoundedCalls diskCalls_;
    BoundedFolderIdentity identity_;
    SearchBaseFinder finder_;
    DefaultsRecentAccessScoreDataStore counts_;
    RecentAccessScore score_;
    FuzzyMatch matcher_;
    PosixFolderLister lister_;
    SearchBaseLogger logger_;
    InlineTaskQueue queue_;
    UserCacheFile file_;
    const std::optional<std::chrono::system_clock::time_point> keptAt_;
    SearchBase searchBase_;
};

/// Returns the order of the matches that the settings name, or nothing, with a line on standard
/// error, when they name none that exists.
std::optional<MatchOrder> orderOfSettings(DefaultsStore &settings);

} // namespace quillon
