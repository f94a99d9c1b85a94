#pragma once

#include "matching/IndexLock.h"
#include "matching/PathTree.h"

#include <algorithm>
#include <cstddef>
#include <span>

namespace quillon {

/// The tree of paths, together with the one lock that guards it.
struct PathIndex
{
    /// The number of nodes or entries that are processed before others get the lock in turn.
    static constexpr std::size_t SLICE = 1024;

    mutable IndexLock lock;
    PathTree tree GUARDED_BY(lock);

    /// Copies the tree into reading order if its siblings are scattered; see PathTree::arrange().
    /// Every id changes. Searches continue meanwhile and wait only while the trees are exchanged.
    /// Does nothing while the tree is held, and gives up when anybody wants to write.
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
