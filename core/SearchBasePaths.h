#pragma once

#include "matching/PathIndex.h"

#include <cstddef>
#include <string_view>

namespace quillon {

/// Drops one "/" from the end of a path of two or more bytes.
std::string_view normalizePath(std::string_view path);

/// The paths that are indexed, kept in the tree that the matcher searches. Operations that change
/// or read the tree are called with the index's lock held, so that a caller can combine them.
class SearchBasePaths
{
public:
    explicit SearchBasePaths(PathIndex &index) : index_(index) {}

    /// Stores a path given in any form and makes it a candidate of searches. Returns the node that
    /// its children go below.
    PathTree::NodeId add(std::string_view path) REQUIRES(index_.lock);
    /// As add() for a name below what add() returned.
    PathTree::NodeId add(PathTree::NodeId parent, std::string_view name) REQUIRES(index_.lock);
    std::size_t count() const REQUIRES_SHARED(index_.lock);

    /// The tree and its lock, shared with the matcher.
    PathIndex &index() const { return index_; }

private:
    PathIndex &index_;
};

} // namespace quillon
