#pragma once

#include "actions/AppleScriptRunner.h"
#include "actions/FrontFinderSearch.h"
#include "app/panel/SearchBaseSource.h"
#include "base/SerialTaskQueue.h"
#include "core/IndexKeeper.h"
#include "core/SearchBase.h"
#include "core/SearchBaseBuilder.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "matching/FuzzyMatch.h"
#include "matching/RecentAccessScore.h"
#include "prefs/KeptFolders.h"

#include <future>
#include <optional>

namespace quillon {

class Preferences;
struct DesktopServices;

/// The index, what it is built from and what it is searched with, one of each and without a window.
struct SearchEngine
{
    /// Takes the future result of reading the kept index. The others outlive this object.
    SearchEngine(DesktopServices &services, const Preferences &preferences,
                 std::future<std::optional<KeptTree>> keptTreeToCome);
    /// Waits until all uses are stored, for as long as the end of the program may take.
    ~SearchEngine();
    SearchEngine(const SearchEngine &) = delete;
    SearchEngine &operator=(const SearchEngine &) = delete;

    std::future<std::optional<KeptTree>> keptTree;
    AppleScriptRunner appleScriptRunner;
    FrontFinderSearch frontFinderSearch;
    DefaultsRecentAccessScoreDataStore uses;
    RecentAccessScore recentAccessScore;
    /// Counts uses and stores them, so that a folder opens without waiting for the settings' disk.
    SerialTaskQueue useQueue{"org.quillon.uses"};
    KeptFolders keptFolders;
    FuzzyMatch fuzzyMatch;
    SearchBaseFinder finder;
    SearchBaseLogger logger;
    SearchBase searchBase;
    SearchBaseBuilder builder;
    SearchBaseSource source;
};

} // namespace quillon
