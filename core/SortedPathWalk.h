#pragma once

#include "matching/PathTree.h"

#include <cstdint>
#include <vector>

namespace quillon {

/// Walks a tree in the order of the whole texts by bytes, without keeping any text.
///
/// The tree may change between two steps while it is held (HeldNodes): the walk may or may not meet
/// what is added or removed meanwhile. It ends once the tree is cleared.
class SortedPathWalk
{
public:
    enum class Of : std::uint8_t
    {
        /// Every stored path.
        paths,
        /// Every path that has a set of children. The set of "/" is kept at the node of the empty
        /// first component, which therefore comes where "/" would.
        childSets,
    };

    SortedPathWalk(const PathTree &tree, Of of);

    /// Returns NONE at the end.
    PathTree::NodeId next();

private:
    struct Item
    {
        PathTree::NodeId node = PathTree::NONE;
        /// It is true for what is below the node, false for the node itself.
        bool isBelow = false;
    };

    bool isMet(PathTree::NodeId node) const;
    bool isTop(PathTree::NodeId node) const;
    bool comesAfter(const Item &a, const Item &b) const;
    void pushChildren(PathTree::NodeId parent);

    const PathTree &tree_;
    const PathTree::Flags flag_;
    const std::uint64_t generation_;
    /// The next item comes last.
    std::vector<Item> items_;
};

} // namespace quillon
