#pragma once

#include "matching/IndexLock.h"
#include "matching/PathTree.h"

#include <functional>

namespace quillon {

/// Pairs the tree of paths with the one lock that guards it.
struct PathIndex
{
    mutable IndexLock lock;
    PathTree tree GUARDED_BY(lock);

    /// Lays the tree out anew where its siblings lie scattered, see PathTree::arrange(); every id
    /// is another one afterwards. Searches go on meanwhile and wait only while the trees are
    /// exchanged. Does nothing while the tree is held, and gives up when anybody wants to write.
    void arrange() EXCLUDES(lock);
};

} // namespace quillon
