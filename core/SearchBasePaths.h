#pragma once

#include "core/SortedPathWalk.h"
#include "matching/PathIndex.h"

#include <cstddef>
#include <functional>
#include <map>
#include <optional>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace quillon {

/// Finds the parent of a path by its text alone.
class StringPathParent
{
public:
    /// Returns the path without its last component. A slash at the end is not a component. The
    /// parent of "/" is "/", and the parent of a relative path of one component is ".". The result
    /// is a view of the path or of a constant.
    static std::string_view getParentFolderPath(std::string_view path);
};

/// Drops one "/" from the end of a path of two or more bytes.
std::string_view normalizePath(std::string_view path);

/// A path to store and the path that lists it, both normalized.
struct SearchBasePathsInsertionOperation
{
    std::string normalizedPath;
    std::string normalizedParentPath;

    friend bool operator==(const SearchBasePathsInsertionOperation &,
                           const SearchBasePathsInsertionOperation &) = default;
};

/// The log writes this before a path that is removed.
inline constexpr std::string_view REMOVE_TAG = "sbp_remove: ";

/// Returns the operations that insert a folder and then what was found below it, each below its own
/// parent.
std::vector<SearchBasePathsInsertionOperation>
makeInsertionOperations(std::string_view url, std::span<const std::string> children);

/// The paths that are indexed and the children that are listed under each.
///
/// Both are flags in the tree that the matcher searches. The matcher's candidates are flags of
/// their own, which only clear() touches here. The caller holds the index's lock during every
/// operation, so that it can combine several, and as long as it uses what paths() and
/// parentToChildren() return.
class SearchBasePaths
{
public:
    using Receiver = std::function<void(std::string_view path)>;

    /// The set of paths.
    class Paths
    {
    public:
        bool contains(std::string_view path) const;
        std::size_t count() const;
        /// Receives each path, in no particular order.
        void forEach(const Receiver &receive) const;

    private:
        friend class SearchBasePaths;
        explicit Paths(const PathTree &tree) : tree_(tree) {}
        const PathTree &tree_;
    };

    /// The map from a path to the set of its children.
    class ParentToChildren
    {
    public:
        bool contains(std::string_view parent) const;
        std::size_t count() const;
        /// Returns nothing when there is no set, not even an empty one.
        std::optional<std::vector<std::string>> children(std::string_view parent) const;
        /// Hands over every path that has a set, ascending by bytes.
        void forEach(const Receiver &receive) const;

    private:
        friend class SearchBasePaths;
        explicit ParentToChildren(const SearchBasePaths &store, const PathTree &tree)
            : store_(store), tree_(tree)
        {}
        const SearchBasePaths &store_;
        const PathTree &tree_;
    };

    explicit SearchBasePaths(PathIndex &index) : index_(index) {}

    /// Stores a path given in any form and lists it under its parent. Returns the node below which
    /// its children go.
    PathTree::NodeId add(std::string_view path) REQUIRES(index_.lock);
    /// Adds a name below a node that add() returned.
    PathTree::NodeId add(PathTree::NodeId parent, std::string_view name) REQUIRES(index_.lock);
    void insert(std::span<const SearchBasePathsInsertionOperation> operations)
        REQUIRES(index_.lock);
    /// Removes the path, whether or not it was stored, and leaves it an empty set of children. Its
    /// parent still lists it. Adds a line that the caller logs once the lock is free. Returns the
    /// path's node.
    PathTree::NodeId remove(std::string_view path, std::vector<std::string> &log)
        REQUIRES(index_.lock);
    // The operations below take nodes, which a caller keeps alive with PathTree::hold().

    /// Stores a path and lists it under its parent.
    void add(PathTree::NodeId node) REQUIRES(index_.lock);
    /// Forgets a stored path as remove(path) does, without a line for the log.
    void remove(PathTree::NodeId node) REQUIRES(index_.lock);
    /// Forgets the listing under the path's parent, and its set of children unless something is
    /// still listed there.
    void forget(PathTree::NodeId node) REQUIRES(index_.lock);
    /// Returns what is listed under a path.
    std::vector<PathTree::NodeId> listedChildren(PathTree::NodeId node) const
        REQUIRES_SHARED(index_.lock);
    /// Lists under a path again everything that is stored directly below it.
    void listStoredChildren(std::string_view parent) REQUIRES(index_.lock);
    /// Forgets everything, the matcher's candidates too.
    void clear() REQUIRES(index_.lock);

    Paths paths() const REQUIRES_SHARED(index_.lock) { return Paths(index_.tree); }
    ParentToChildren parentToChildren() const REQUIRES_SHARED(index_.lock)
    {
        return ParentToChildren(*this, index_.tree);
    }
    std::size_t count() const REQUIRES_SHARED(index_.lock) { return paths().count(); }

    /// Returns every set of children as text, ascending by path: the path, ": ", and each child on
    /// a line of its own after a tab.
    std::string treeMappingDescription() const REQUIRES_SHARED(index_.lock);
    /// Appends the text of one set, given by its node, with a line feed before it unless it is the
    /// first. ROOT stands for the set of the empty path, if there is one, which comes before all
    /// others.
    void appendTreeMapping(PathTree::NodeId node, bool isFirst, std::string &text) const
        REQUIRES_SHARED(index_.lock);

    /// Returns the node below which the children of a path go, or NONE when there is no such node.
    PathTree::NodeId nodeAbove(std::string_view parent) const REQUIRES_SHARED(index_.lock);

    /// Returns the lock of the tree, which the matcher shares.
    IndexLock &lock() const RETURNS_CAPABILITY(index_.lock) { return index_.lock; }
    PathTree &mutableTree() REQUIRES(index_.lock) { return index_.tree; }
    const PathTree &tree() const REQUIRES_SHARED(index_.lock) { return index_.tree; }

private:
    using Children = std::set<std::string, std::less<>>;

    PathTree::NodeId list(std::string_view path, std::string_view parent) REQUIRES(index_.lock);
    /// Returns null when no children are listed elsewhere.
    const Children *listedElsewhere(std::string_view parent) const NO_THREAD_SAFETY_ANALYSIS;
    /// Does the same for the node that keeps the parent's set.
    const Children *listedElsewhere(PathTree::NodeId set) const NO_THREAD_SAFETY_ANALYSIS;

    PathIndex &index_;
    /// Holds the children whose parent is not the text before their last slash, by the parent, and
    /// the set of the empty path. Nothing that a crawl finds comes here.
    std::map<std::string, Children, std::less<>> elsewhere_ GUARDED_BY(index_.lock);
};

} // namespace quillon
