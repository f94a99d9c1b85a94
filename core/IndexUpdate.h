#pragma once

#include "core/FoundPaths.h"
#include "core/HeldNodes.h"
#include "core/SearchBasePaths.h"
#include "indexing/NameKinds.h"
#include "indexing/SkipRules.h"
#include "platform/FolderLister.h"

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <span>
#include <stop_token>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace quillon {

struct CrawlResult;

/// What the log says of a folder that was to be crawled and is a package, before its path.
inline constexpr const char *PACKAGE_TAG = "sb_grd is_package ";

/// Changed paths that are brought up to date together.
struct ChangedPaths
{
    /// The folder that all of them are in; without names, a path that changed itself. It has no
    /// slash at its end.
    std::string path;
    std::vector<std::string> names = {};

    /// Puts the paths together that are in one folder, some hundred at most. An include folder and
    /// "/" stay alone.
    static std::vector<ChangedPaths> together(std::span<const std::string> paths,
                                              const std::vector<std::string> &roots);
};

/// Brings what the index holds of some changed paths and everything below them up to date, in three
/// steps: what is there is found, compared with the index, and applied. Only the last one changes
/// what anybody sees of the index, all at once.
///
/// Updates and builds exclude each other; that is the caller's task.
class IndexUpdate
{
public:
    using Now = std::function<std::chrono::steady_clock::time_point()>;

    struct Terms
    {
        FolderLister &folderLister;
        /// Extensions of the files that are indexed.
        std::set<std::string> patterns;
        /// The include folders, ascending.
        std::vector<std::string> roots;
        std::shared_ptr<const SkipRules> rules;
        /// Requested with the index locked.
        std::stop_token isReset;
        Now now;
    };

    IndexUpdate(SearchBasePaths &paths, Terms terms, ChangedPaths changed);

    /// Whether there is something to crawl: the changed path, or the folder of the changed names.
    /// What the crawl finds goes into found() and how it went to crawled().
    bool isFolder() const { return kind_ == Kind::folder; }
    FoundPaths &found() { return found_; }
    void crawled(const CrawlResult &result);

    /// Compares, locking the index for a little at a time. False when it was reset, or when no path
    /// is known to have changed. What does not answer stays as it is.
    bool compare() EXCLUDES(paths_.lock());
    /// Applies with the index locked. False when it was reset.
    bool apply() EXCLUDES(paths_.lock());

    /// Hands over the lines for the log in their order, some at a time and without any lock held.
    /// They end early when the index is reset.
    void log(const std::function<void(std::span<const std::string> lines)> &receive) const
        EXCLUDES(paths_.lock());
    /// The changed paths that a file system did not answer for, or for something below them.
    std::vector<std::string> unanswered() const;
    /// How long the insertion took and how many operations it was.
    std::chrono::duration<double> insertionTime() const { return insertionTime_; }
    std::size_t operations() const { return operations_.size() + missing_.size(); }

private:
    using Kind = FolderLister::Kind;
    using NodeId = PathTree::NodeId;

    /// One of the changed paths.
    struct Changed
    {
        std::string path;
        /// Unknown while nothing may be changed of the path.
        Kind kind = Kind::unknown;
        bool isPackage = false;
        NodeId node = PathTree::NONE;
        /// The children that were listed under the path before.
        std::vector<NodeId> stored = {};
    };
    /// A node below a changed path that was not found.
    struct Unfound
    {
        NodeId node = PathTree::NONE;
        PathTree::Flags flags = 0;
        /// Whether the removals reach it.
        bool isTouched = false;
        /// The one above it among the unfound ones, or one of the two below.
        std::size_t parent = 0;
    };
    static constexpr std::size_t IN_FOLDER = ~std::size_t{0};
    static constexpr std::size_t IN_NO_FOLDER = IN_FOLDER - 1;

    bool isAlone() const { return names_.empty(); }
    Kind kindOf(const std::string &path);
    Kind kindWithoutLinks(const std::string &path);
    bool isRoot(const std::string &path) const;
    bool isSkipped(const std::string &folder) const;
    bool isBelowChanged(const std::string &path) const;
    bool isTouched(FoundPaths::Token path) const;
    bool stepAside() const REQUIRES_SHARED(paths_.lock());

    bool compareFound() EXCLUDES(paths_.lock());
    bool compareIndexed() EXCLUDES(paths_.lock());
    bool compareBelow(NodeId top, std::size_t place) REQUIRES_SHARED(paths_.lock());
    std::size_t placeOf(NodeId node, std::size_t parent, bool isTouched)
        REQUIRES_SHARED(paths_.lock());
    bool judge() EXCLUDES(paths_.lock());
    Kind kindIn(Kind folder, const Unfound &unfound) EXCLUDES(paths_.lock());
    bool makeNodes() EXCLUDES(paths_.lock());

    void remove(NodeId node) REQUIRES(paths_.lock());
    void insert() REQUIRES(paths_.lock());
    bool appendTexts(std::span<const NodeId> nodes, std::string_view prefix,
                     std::vector<std::string> &texts) const EXCLUDES(paths_.lock());

    SearchBasePaths &paths_;
    const Terms terms_;
    const ExtensionSet extensions_;
    /// What is crawled: the changed path, or the folder of the changed names.
    const std::string path_;
    const std::vector<std::string> names_;
    std::vector<Changed> changed_;
    Kind kind_;
    /// Something below a changed path did not answer.
    bool isAnyUnanswered_ = false;
    FoundPaths found_;
    std::optional<HeldNodes> held_;

    /// The node that the children of path_ go below; NONE where there is none yet.
    NodeId top_ = PathTree::NONE;
    /// The node of each found path. The nodes of new paths are made last.
    std::vector<NodeId> nodes_;
    std::vector<FoundPaths::Token> new_;
    /// The nodes that were there, and whether they are folders; sorted.
    std::vector<std::pair<NodeId, bool>> foundNodes_;
    std::vector<Unfound> unfound_;
    /// The nodes of the include folders below the changed paths.
    std::vector<NodeId> rootNodes_;

    /// Found and to be put into the index.
    std::vector<NodeId> missing_;
    std::vector<SearchBasePathsInsertionOperation> operations_;
    /// Children before their parents.
    std::vector<NodeId> gone_;
    /// Nobody knows whether they are gone, and removals reach them.
    std::vector<Unfound> unanswered_;
    std::vector<std::string> innerRoots_;

    // What was done.
    std::vector<NodeId> forgotten_;
    std::chrono::duration<double> insertionTime_{};
};

} // namespace quillon
