#pragma once

#include "base/DefaultsStore.h"
#include "indexing/SkipRules.h"
#include "platform/FolderIdentity.h"

#include <memory>
#include <set>
#include <string>
#include <vector>

namespace quillon {

class SearchBaseFinder;

/// Everything the settings say about what is indexed, as it was at one time. Taken once a build and
/// used by the skip rules, the crawl, the index, the updates and the watch until the next build.
struct SearchLocations
{
    /// An include folder that was not there or could not be read.
    struct Missing
    {
        /// The folder's name in the settings.
        std::string name;
        /// The absolute path where the folder will be; empty when the settings hold none.
        std::string path;
        FolderPresence presence = FolderPresence::away;
    };

    /// Absolute paths, ascending, each once.
    std::vector<std::string> folders;
    /// Ascending by name.
    std::vector<Missing> missing;
    /// The exclude patterns in force: the user's in their order, then the built-in ones.
    std::vector<std::string> patterns;
    /// Extensions of the files that are indexed, in the user's order.
    std::vector<std::string> filePatterns;

    /// Reads the settings and looks at each include folder once, so it is not called on the main
    /// thread. Takes as long as the disk that is slowest to answer.
    static SearchLocations of(SearchBaseFinder &finder);

    /// Reads what the settings say without looking at any disk, so the folders are left out.
    static SearchLocations withoutFolders(const SearchBaseFinder &finder);

    /// Returns the patterns and extensions here and the bookmarks of the include folders, in a form
    /// that is good for nothing but comparing.
    std::vector<std::string> settings(const DefaultsDictionary &bookmarks) const;

    /// Returns whether the settings name any folder, there or not.
    bool nameFolders() const { return !folders.empty() || !missing.empty(); }
    /// Every folder that is a root of the index as soon as it is there, ascending. A folder whose
    /// file system did not answer is left out: who watches it would wait for that.
    std::vector<std::string> roots() const;
    std::set<std::string> extensions() const { return {filePatterns.begin(), filePatterns.end()}; }
    std::shared_ptr<const SkipRules> rules() const;

    /// Returns whether both lead to the same index at this time.
    friend bool operator==(const SearchLocations &a, const SearchLocations &b)
    {
        return a.folders == b.folders && a.patterns == b.patterns &&
               a.filePatterns == b.filePatterns;
    }
};

} // namespace quillon
