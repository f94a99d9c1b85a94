#pragma once

#include "matching/PathTree.h"

#include <gtest/gtest.h>

namespace quillon {

/// Exchanges the tree for an arranged one, as PathIndex::arrange() does with a large one, unless it
/// is held. The caller holds the index's lock.
inline void arrangeNow(PathTree &tree)
{
    if (tree.isHeld())
        return;
    PathTree arranged;
    ASSERT_TRUE(arranged.arrange(tree, [] { return true; }));
    tree.replaceBy(arranged);
}

} // namespace quillon
