#pragma once

#include "base/Mutex.h"
#include "indexing/SkipRules.h"

#include <memory>
#include <string_view>

namespace quillon {

class SearchBaseFinder;
struct SearchLocations;

/// Decides whether a folder must be skipped, for the crawl and the watcher alike.
///
/// The answers stay the same until the next refresh, whatever the user changes meanwhile. Before
/// the first refresh nothing is skipped. Safe from every thread.
class SearchBaseIgnorePaths
{
public:
    explicit SearchBaseIgnorePaths(SearchBaseFinder &searchBaseFinder);

    /// Takes over the patterns and include folders that are in force now: the user's patterns
    /// before the built-in ones, the folders by path.
    void refresh();
    /// Refreshes the rules from the locations that a build has taken.
    void refresh(const SearchLocations &locations);

    /// Judges a folder by its path alone.
    bool shouldSkipPath(std::string_view path) const;
    /// Judges one item found in a crawl. Only folders are ever skipped.
    bool shouldSkip(std::string_view path, std::string_view name, bool isDirectory) const;

    /// Returns the rules of the last refresh, for a caller that tests many paths; never null.
    std::shared_ptr<const SkipRules> rules() const;

private:
    SearchBaseFinder &searchBaseFinder_;
    mutable Mutex mutex_;
    std::shared_ptr<const SkipRules> rules_ GUARDED_BY(mutex_);
};

} // namespace quillon
