#pragma once

#include "matching/PathIndex.h"

namespace quillon {

/// Keeps every node of the tree in place, whatever flags it loses, and every id valid unless the
/// tree is cleared. Its destructor removes the dead nodes, locking the index for a short time at
/// once.
class HeldNodes
{
public:
    /// The index outlives this object.
    explicit HeldNodes(PathIndex &index);
    ~HeldNodes();
    HeldNodes(const HeldNodes &) = delete;
    HeldNodes &operator=(const HeldNodes &) = delete;

private:
    bool collectSome();

    PathIndex &index_;
};

} // namespace quillon
