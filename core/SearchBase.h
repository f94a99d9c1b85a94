#pragma once

#include "core/SearchBasePaths.h"
#include "core/SearchBaseResult.h"
#include "indexing/SearchBaseIgnorePaths.h"
#include "matching/FuzzyMatch.h"

#include <cstddef>
#include <functional>
#include <set>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

class FolderLister;
class SearchBaseFinder;

/// The index in memory and the one object through which the program searches it.
///
/// search() and mostAccessedResults() may be called from any thread, also while build() runs; they
/// then answer from what is there.
class SearchBase
{
public:
    /// Called with one line about the state of a build, on the thread that builds.
    using Progress = std::function<void(const std::string &line)>;

    SearchBase(SearchBaseFinder &searchBaseFinder, FuzzyMatch &searchBaseMatcher,
               FolderLister &folderLister);

    /// At most 25 matches, best first; then the query itself as a path to go to, when it begins
    /// with "/" once blanks are trimmed and fewer than 25 rows stand.
    std::vector<SearchBaseResultRef> search(std::string_view query) const;
    /// At most 10 of the folders that the user opened most, most used first.
    std::vector<SearchBaseResultRef> mostAccessedResults() const;

    /// Forgets everything; the use counts stay.
    void reset();
    /// Crawls every include folder and adds what it finds, until stop is requested or the index is
    /// reset.
    void build(const Progress &progress, const std::stop_token &stop = {});
    /// The extensions of the files to index besides folders.
    std::set<std::string> includeFilePatterns() const;
    /// Number of paths indexed.
    std::size_t count() const;

    FuzzyMatch &searchBaseMatcher() { return searchBaseMatcher_; }

private:
    FuzzyMatch &searchBaseMatcher_;
    SearchBasePaths searchBasePaths_;
    SearchBaseFinder &searchBaseFinder_;
    SearchBaseIgnorePaths searchBaseIgnorePaths_;
    FolderLister &folderLister_;
};

} // namespace quillon
