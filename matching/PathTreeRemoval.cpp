// How texts are flagged, and how they leave the tree
//
// A node that no text needs any more is dead: it has neither a flag that counts nor children. It
// stays where it is, since a search or an update may hold it, and its parent is remembered. Later,
// while nobody holds the tree, the dead children of some parents at a time are taken out. Their ids
// are given to new nodes once no search stands on them.

#include "matching/PathTree.h"

#include <algorithm>
#include <bit>

namespace quillon {

void PathTree::addFlags(NodeId id, Flags flags)
{
    Node &node = mutableNode(id);
    const auto added = static_cast<Flags>(flags & ~node.flags & COUNTED_FLAGS);
    if (added == 0)
        return;
    ++changes_;
    revive(node);
    node.flags |= added;
    for (unsigned bits = added; bits != 0; bits &= bits - 1)
        ++counts_[static_cast<std::size_t>(std::countr_zero(bits))];
}

void PathTree::removeFlags(NodeId id, Flags flags)
{
    Node &node = mutableNode(id);
    const auto removed = static_cast<Flags>(flags & node.flags & COUNTED_FLAGS);
    if (removed == 0)
        return;
    ++changes_;
    node.flags &= static_cast<Flags>(~removed);
    for (unsigned bits = removed; bits != 0; bits &= bits - 1)
        --counts_[static_cast<std::size_t>(std::countr_zero(bits))];
    buryIfDead(id);
    if (dead_ > FEWEST_DEAD_TO_COLLECT + used_ / 4)
        collectSomeDead(parentsOfDead_.max_size());
}

void PathTree::removeFlagsEverywhere(Flags flags)
{
    std::size_t left = 0;
    for (std::size_t i = 0; i < counts_.size(); ++i)
        left += (flags >> i & 1) != 0 ? 0 : counts_[i];
    if (left == 0) {
        clear();
        return;
    }
    for (NodeId id = 1; id < used_; ++id)
        removeFlags(id, flags);
}

void PathTree::revive(Node &node)
{
    if ((node.flags & DEAD) == 0)
        return;
    node.flags &= static_cast<Flags>(~DEAD);
    --dead_;
}

void PathTree::buryIfDead(NodeId id)
{
    Node &node = mutableNode(id);
    if (id == ROOT || node.hasChildren() || (node.flags & (COUNTED_FLAGS | DEAD)) != 0)
        return;
    node.flags |= DEAD;
    ++dead_;
    rememberParentOfDead(node.parent);
}

void PathTree::rememberParentOfDead(NodeId parent)
{
    Node &node = mutableNode(parent);
    if ((node.flags & HAS_DEAD_CHILDREN) != 0)
        return;
    node.flags |= HAS_DEAD_CHILDREN;
    parentsOfDead_.push_back(parent);
}

bool PathTree::collectSomeDead(std::size_t parents)
{
    if (holds_ > 0 || parentsOfDead_.empty())
        return false;
    ++changes_;
    trail_ = {};
    for (; parents > 0 && !parentsOfDead_.empty(); --parents) {
        const NodeId parent = parentsOfDead_.back();
        parentsOfDead_.pop_back();
        mutableNode(parent).flags &= static_cast<Flags>(~HAS_DEAD_CHILDREN);
        removeDeadChildren(parent);
        buryIfDead(parent);
    }
    recycle();
    return !parentsOfDead_.empty();
}

void PathTree::removeDeadChildren(NodeId parent)
{
    Node &above = mutableNode(parent);
    if (!above.hasChildren())
        return;
    Family &family = mutableFamily(above);
    NodeId kept = NONE;
    for (NodeId id = family.firstChild; id != NONE;) {
        const Node &child = node(id);
        const NodeId next = child.nextSibling;
        if ((child.flags & DEAD) == 0) {
            kept = id;
        } else {
            // The dead node keeps its own link, so a search that stands on it finds its way back.
            if (kept == NONE)
                family.firstChild = next;
            else
                setNextSibling(kept, next);
            if (hasTable_)
                children_.erase(hashOfChild(id), id);
            givenUp_.push_back(id);
            --dead_;
        }
        id = next;
    }
    family.lastChild = kept;
    if (kept == NONE)
        endFamily(above);
}

void PathTree::recycle()
{
    if (pins_.load() != 0)
        return;
    // The order is reversed, so that the siblings that come next get ascending ids.
    std::ranges::reverse(givenUp_);
    for (const NodeId id : givenUp_) {
        names_.release(node(id).name);
        mutableNode(id) = {};
        setNextSibling(id, NONE);
        free_.push_back(id);
    }
    givenUp_.clear();
}

} // namespace quillon
