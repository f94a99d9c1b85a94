#pragma once

#include <optional>
#include <string>
#include <vector>

namespace quillon {

class FolderIdentity;
class FolderLister;
class SearchBaseFinder;
class SkipRules;

/// A folder that was not added to those that are searched, and why.
struct RefusedFolder
{
    enum class Reason
    {
        isListed,
        isNoFolder,
        cannotBeRead,
        /// The folder counts as a single item.
        isPackage,
        /// A folder above it is searched and the search reaches it.
        isSearchedAsPart,
        cannotBeStored,
    };

    std::string path;
    Reason reason;
    /// The folder that is searched, for isSearchedAsPart alone.
    std::string around = {};
};

/// Adds folders to those that are searched. Any thread that may wait for the disk.
class IncludeFolders
{
public:
    struct Outcome
    {
        std::vector<std::string> added;
        std::vector<RefusedFolder> refused;
    };

    /// All three outlive this object.
    IncludeFolders(SearchBaseFinder &finder, const FolderIdentity &identity, FolderLister &lister)
        : finder_(finder), identity_(identity), lister_(lister)
    {}

    /// Adds the folders, which are given by their absolute paths.
    Outcome add(const std::vector<std::string> &paths) const;

private:
    /// Returns nothing when the folder can be added.
    std::optional<RefusedFolder> refusal(const std::string &path,
                                         const std::vector<std::string> &listed,
                                         const SkipRules &rules) const;
    bool isSearchedAsPartOf(const std::string &folder, const std::string &path,
                            const SkipRules &rules) const;

    SearchBaseFinder &finder_;
    const FolderIdentity &identity_;
    FolderLister &lister_;
};

} // namespace quillon
