#pragma once

#include "core/SearchBasePaths.h"

namespace quillon {

/// Keeps every node of the tree in place, whatever flags it loses, until the end of its life. Then
/// what is dead goes, with the index locked for a little at a time.
class HeldNodes
{
public:
    /// The store outlives this.
    explicit HeldNodes(SearchBasePaths &paths);
    ~HeldNodes();
    HeldNodes(const HeldNodes &) = delete;
    HeldNodes &operator=(const HeldNodes &) = delete;

private:
    bool collectSome();

    SearchBasePaths &paths_;
};

} // namespace quillon
