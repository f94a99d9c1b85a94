#pragma once

#include "matching/IndexLock.h"
#include "matching/PathTree.h"

namespace quillon {

/// The tree of paths and the one lock that guards it.
struct PathIndex
{
    mutable IndexLock lock;
    PathTree tree GUARDED_BY(lock);
};

} // namespace quillon
