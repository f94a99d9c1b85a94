#pragma once

#include "matching/IndexLock.h"
#include "matching/PathTree.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace quillon {

/// Pairs the tree of paths with the one lock that guards it.
struct PathIndex
{
    /// Nodes or entries that are worked on before others get the lock in turn.
    static constexpr std::size_t SLICE = 1024;

    mutable IndexLock lock;
    PathTree tree GUARDED_BY(lock);

    /// Lays the tree out anew where its siblings lie scattered, see PathTree::arrange(); every id
    /// is another one afterwards. Searches go on meanwhile and wait only while the trees are
    /// exchanged. Does nothing while the tree is held, and gives up when anybody wants to write.
    void arrange() EXCLUDES(lock);
};

/// Cuts the next slice off the front of the rest, which must not be empty.
template <typename Entry>
std::span<Entry> takeSlice(std::span<Entry> &rest)
{
    const std::span<Entry> slice = rest.first(std::min(PathIndex::SLICE, rest.size()));
    rest = rest.subspan(slice.size());
    return slice;
}

} // namespace quillon
