#pragma once

#include "actions/AppleScriptRunner.h"
#include "actions/FrontFinderSearch.h"
#include "app/panel/SearchBaseSource.h"
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
    SearchEngine(const SearchEngine &) = delete;
    SearchEngine &operator=(const SearchEngine &) = delete;

    std::future<std::optional<KeptTree>> keptTree;
    AppleScriptRunner appleScriptRunner;
    FrontFinderSearch frontFinderSearch;
    DefaultsRecentAccessScoreDataStore uses;
    RecentAccessScore recentAccessScore;
    KeptFolders keptFolders;
    FuzzyMatch fuzzyMatch;
    SearchBaseFinder finder;
    SearchBaseLogger logger;
    SearchBase searchBase;
    SearchBaseBuilder builder;
    SearchBaseSource source;
};

} // namespace quillon
