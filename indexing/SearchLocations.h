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

/// Holds all that the settings said about what is indexed at one time. A build takes the value
/// once, and the skip rules, the crawl, the index, the updates and the watch use it until the next
/// build.
struct SearchLocations
{
    /// An include folder that was missing or could not be read.
    struct Missing
    {
        /// The folder's name in the settings.
        std::string name;
        /// The absolute path where the folder will be; empty when the settings hold none.
        std::string path;
        FolderPresence presence = FolderPresence::away;
    };

    /// The absolute paths of the folders, ascending, each once.
    std::vector<std::string> folders;
    /// The missing folders, ascending by name.
    std::vector<Missing> missing;
    /// The paths of those of all these folders below which hidden folders are indexed too,
    /// ascending, each once.
    std::vector<std::string> withHidden;
    /// The names of such folders in the settings, ascending.
    std::vector<std::string> namesWithHidden;
    /// The exclude patterns in force: the user's in their order, then the built-in ones.
    std::vector<std::string> patterns;
    /// The extensions of the files that are indexed, in the user's order.
    std::vector<std::string> filePatterns;

    /// Reads the settings and checks each include folder once, so it is not called on the main
    /// thread. It takes as long as the slowest disk takes to answer.
    static SearchLocations of(SearchBaseFinder &finder);

    /// Reads what the settings say without asking any disk, so the folders are left out.
    static SearchLocations withoutFolders(const SearchBaseFinder &finder);

    /// Returns the patterns and extensions of this value, the bookmarks of the include folders and
    /// what is chosen for these. The form serves only for comparing.
    std::vector<std::string> settings(const DefaultsDictionary &bookmarks) const;

    /// Returns whether the settings name any folder, even a missing one.
    bool nameFolders() const { return !folders.empty() || !missing.empty(); }
    /// Returns every folder that is a root of the index as soon as it is there, ascending. A folder
    /// whose file system did not answer is left out, since watching it would wait for that file
    /// system.
    std::vector<std::string> roots() const;
    std::set<std::string> extensions() const { return {filePatterns.begin(), filePatterns.end()}; }
    std::shared_ptr<const SkipRules> rules() const;

    /// Returns whether both lead to the same index at this time.
    friend bool operator==(const SearchLocations &a, const SearchLocations &b)
    {
        return a.folders == b.folders && a.withHidden == b.withHidden && a.patterns == b.patterns &&
               a.filePatterns == b.filePatterns;
    }
};

} // namespace quillon
