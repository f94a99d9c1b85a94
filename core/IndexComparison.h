#pragma once

#include "base/Mutex.h"
#include "core/DiskKinds.h"
#include "core/FoundNodes.h"
#include "core/SearchBasePaths.h"
#include "platform/FolderLister.h"

#include <cstddef>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// Compares what the index holds of some changed paths, and of everything below them, with what a
/// crawl has found there. Asks the disk about what the crawl did not find. Changes nothing that a
/// search can see.
class IndexComparison
{
public:
    using Kind = FolderLister::Kind;
    using NodeId = PathTree::NodeId;

    struct Terms
    {
        /// The include folders, ascending. They outlive the comparison.
        const std::vector<std::string> &roots;
        /// The stop is requested with the index locked.
        std::stop_token isReset;
        /// True when there is one changed path, which was crawled itself; false when names in one
        /// folder were.
        bool isAlone = true;
        /// True when a changed path and the children listed under it are removed before what was
        /// found is put in.
        bool removesFirst = true;
    };
    /// Is one of the changed paths.
    struct Changed
    {
        std::string path;
        /// The kind is unknown while nothing about the path may be changed.
        Kind kind = Kind::unknown;
        bool isPackage = false;
        NodeId node = PathTree::NONE;
        /// True when searches find the path.
        bool isCandidate = false;
        /// These children were listed under the path before.
        std::vector<NodeId> stored = {};
    };
    struct Unanswered
    {
        NodeId node = PathTree::NONE;
        PathTree::Flags flags = 0;
    };
    struct Outcome
    {
        /// These nodes were found and are put into the index, or put back; parents come first.
        std::vector<NodeId> missing;
        /// These nodes are gone from the disk; children come before their parents.
        std::vector<NodeId> gone;
        /// Searches go on finding these of the gone nodes, since an include folder that is away
        /// holds them.
        std::vector<NodeId> away;
        /// Removals reach these nodes, and nobody knows whether they are gone.
        std::vector<Unanswered> unanswered;
        /// The include folders below the changed paths that are there.
        std::vector<std::string> innerRoots;
        /// The topmost indexed paths below the changed ones that did not answer.
        std::vector<std::string> silent;
        /// True when something below a changed path did not answer.
        bool isAnyUnanswered = false;
    };

    /// The paths, the disk and what was found outlive this object.
    IndexComparison(SearchBasePaths &paths, const DiskKinds &disk, const FoundNodes &found,
                    const Terms &terms);

    /// Compares once, locking the index for a short time at once. The changed paths come with their
    /// kinds and nodes. notListed are the folders that the crawl could not list. isAway is true
    /// when the include folder that holds the changed paths, or is the changed path, is away.
    /// Returns false when the index was reset.
    bool compare(std::vector<Changed> &changed, const std::vector<std::string> &notListed,
                 bool isAway) EXCLUDES(paths_.lock());
    const Outcome &outcome() const { return outcome_; }

    /// Appends the texts of nodes, each with the prefix, locking the index for a short time at
    /// once. Returns false when the index was reset.
    bool appendTexts(std::span<const NodeId> nodes, std::string_view prefix,
                     std::vector<std::string> &texts) const EXCLUDES(paths_.lock());

private:
    /// A node below a changed path that was not found.
    struct Unfound
    {
        NodeId node = PathTree::NONE;
        PathTree::Flags flags = 0;
        /// True when the removals reach the node.
        bool isTouched = false;
        /// The index of the nearest node above in unfound_, or one of the places below.
        std::size_t parent = 0;
    };
    static constexpr std::size_t IN_FOLDER = ~std::size_t{0};
    static constexpr std::size_t IN_NO_FOLDER = IN_FOLDER - 1;
    /// The file system did not answer for a path above, or did not list a folder above.
    static constexpr std::size_t IN_UNKNOWN = IN_FOLDER - 2;

    static bool isBelowChanged(const std::string &path, const std::vector<Changed> &changed);
    bool stepAside() const REQUIRES_SHARED(paths_.lock());
    bool compareWithIndex(std::vector<Changed> &changed, const std::vector<std::string> &notListed)
        EXCLUDES(paths_.lock());
    std::size_t placeBelow(const Changed &changed) const;
    bool wasListed(NodeId node) const;
    bool compareBelow(const Changed &changed) REQUIRES_SHARED(paths_.lock());
    std::size_t placeOf(NodeId node, std::size_t parent, bool isTouched)
        REQUIRES_SHARED(paths_.lock());
    bool judge(bool isAway) EXCLUDES(paths_.lock());
    bool isIncludeFolder(NodeId node) const;
    Kind kindIn(Kind folder, const Unfound &unfound) EXCLUDES(paths_.lock());

    SearchBasePaths &paths_;
    const DiskKinds &disk_;
    const FoundNodes &found_;
    const std::vector<std::string> &roots_;
    const std::stop_token isReset_;
    const bool isAlone_;
    const bool removesFirst_;
    /// The node of the path that was crawled itself.
    NodeId alone_ = PathTree::NONE;
    std::vector<Unfound> unfound_;
    /// The nodes of the include folders below the changed paths.
    std::vector<NodeId> rootNodes_;
    /// The nodes of the folders that the crawl could not list, ascending.
    std::vector<NodeId> notListedNodes_;
    Outcome outcome_;
};

} // namespace quillon
