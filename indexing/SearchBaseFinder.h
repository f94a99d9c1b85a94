#pragma once

#include "indexing/SearchBaseLocation.h"
#include "prefs/Bookmarks.h"
#include "prefs/Preferences.h"

#include <cstdio>
#include <memory>
#include <string>
#include <vector>

namespace quillon {

class DefaultsStore;
class FolderIdentity;

/// Is called when a location was removed.
class SearchBaseFinderDelegate
{
public:
    SearchBaseFinderDelegate() = default;
    virtual ~SearchBaseFinderDelegate() = default;
    SearchBaseFinderDelegate(const SearchBaseFinderDelegate &) = delete;
    SearchBaseFinderDelegate &operator=(const SearchBaseFinderDelegate &) = delete;

    virtual void reloadList() = 0;
};

/// Lists the configured search locations and removes them.
///
/// Reads the defaults store on every call and holds nothing in between. Safe from every thread, but
/// for the delegate, which is set and told on one thread.
class SearchBaseFinder
{
public:
    /// The bookmarks' diagnostic lines go to the stream; it, the store and the service outlive this
    /// object.
    SearchBaseFinder(DefaultsStore &store, const FolderIdentity &folders,
                     std::FILE *diagnostics = stdout);

    /// Every include folder that resolves, listed once, ascending by path.
    std::vector<IncludePathSearchBaseLocation> includeLocations();
    /// The user's patterns in their order.
    std::vector<ExcludePatternSearchBaseLocation> excludeLocations() const;
    /// The user's extensions in their order.
    std::vector<IncludeFilePatternSearchBaseLocation> includeFilePatternLocations() const;
    /// The patterns that always hold, in their order; nowhere stored or shown.
    static std::vector<ExcludePatternSearchBaseLocation> builtInExcludeLocations();
    /// The texts of the patterns that keep folders out: the user's, then the built-in ones.
    std::vector<std::string> patternsInForce() const;
    /// The user's patterns as long as the user has changed nothing.
    static std::vector<std::string> defaultExcludePatterns();

    /// Takes the location out of the list it came from; an include folder goes with every bookmark
    /// that leads to it. The delegate, if still alive, is told in every case.
    void remove(const SearchBaseLocation &location);

    void setDelegate(std::weak_ptr<SearchBaseFinderDelegate> delegate);

    Bookmarks bookmarks;
    PreferencesArrayList excludePatternsPreferences;
    PreferencesArrayList includeFilePatternPreferences;

private:
    std::weak_ptr<SearchBaseFinderDelegate> delegate_;
};

} // namespace quillon
