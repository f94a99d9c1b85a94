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

/// Is called when a location has been removed.
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
/// Reads the defaults store on every call and keeps nothing in between. Safe from every thread,
/// except for the delegate, which is set and called on one thread.
class SearchBaseFinder
{
public:
    /// The bookmarks' diagnostic lines go to the stream; it, the store and the service outlive this
    /// object.
    SearchBaseFinder(DefaultsStore &store, const FolderIdentity &folders,
                     std::FILE *diagnostics = stdout);

    /// Returns every include folder that resolves, each once, ascending by path.
    std::vector<IncludePathSearchBaseLocation> includeLocations();
    /// Returns the user's patterns in their order.
    std::vector<ExcludePatternSearchBaseLocation> excludeLocations() const;
    /// Returns the user's extensions in their order.
    std::vector<IncludeFilePatternSearchBaseLocation> includeFilePatternLocations() const;
    /// Returns the patterns that always hold, in their order. They are neither stored nor shown
    /// anywhere.
    static std::vector<ExcludePatternSearchBaseLocation> builtInExcludeLocations();
    /// Returns the texts of the patterns that keep folders out: the user's, then the built-in ones.
    std::vector<std::string> patternsInForce() const;
    /// Returns the patterns that the user has before changing anything.
    static std::vector<std::string> defaultExcludePatterns();

    /// Removes the location from its list. An include folder is removed with every bookmark that
    /// leads to it. The delegate, if it is still alive, is called in every case.
    void remove(const SearchBaseLocation &location);

    void setDelegate(std::weak_ptr<SearchBaseFinderDelegate> delegate);

    Bookmarks bookmarks;
    PreferencesArrayList excludePatternsPreferences;
    PreferencesArrayList includeFilePatternPreferences;

private:
    std::weak_ptr<SearchBaseFinderDelegate> delegate_;
};

} // namespace quillon
