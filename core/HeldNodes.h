#pragma once

#include "matching/PathIndex.h"

namespace quillon {

/// Keeps every node of the tree in place, whatever flags it loses, and every id valid unless the
/// tree is cleared. Removes the dead nodes at the end of its life, with the index locked for a
/// little at a time.
class HeldNodes
{
public:
    /// The index outlives this.
    explicit HeldNodes(PathIndex &index);
    ~HeldNodes();
    HeldNodes(const HeldNodes &) = delete;
    HeldNodes &operator=(const HeldNodes &) = delete;

private:
    bool collectSome();

    PathIndex &index_;
};

} // namespace quillon
