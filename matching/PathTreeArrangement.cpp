// How a tree is arranged
//
// A search reads the children of one folder one after the other, then those of the first child that
// is worth it, and so on. A crawl inserts the children of a folder together, which gives them
// neighbouring ids. A sorted list of paths inserts a child between the descendants of its siblings,
// and folders that come one by one in a session take ids wherever there is room: each sibling then
// costs a cache miss, which makes a search two to five times slower. The cure is a copy in which
// the ids follow the order of reading, the names too. It is made while others go on reading, and
// only exchanging it takes the lock exclusively.

#include "base/Hashing.h"
#include "base/Require.h"
#include "matching/PathTree.h"

#include <utility>

namespace quillon {

namespace {

/// A smaller number of nodes fits into the processor's caches in any order.
constexpr std::size_t FEWEST_SCATTERED = 10'000;
/// One node in this many may be apart from its sibling.
constexpr std::size_t SCATTERED_SHARE = 8;
constexpr unsigned NODES_BETWEEN_QUESTIONS = 1024;

} // namespace

bool PathTree::isScattered() const
{
    return scattered_ > FEWEST_SCATTERED && scattered_ > used_ / SCATTERED_SHARE;
}

bool PathTree::arrange(const PathTree &source, const std::function<bool()> &isWanted)
{
    require(used_ == 1, "a tree is arranged into an empty one");
    struct Pair
    {
        NodeId from = NONE;
        NodeId to = NONE;
    };
    std::vector<Pair> parents{{ROOT, ROOT}};
    std::vector<Pair> children;
    unsigned copied = 0;
    mutableNode(ROOT).flags = static_cast<Flags>(source.node(ROOT).flags & COUNTED_FLAGS);
    while (!parents.empty()) {
        const Pair parent = parents.back();
        parents.pop_back();
        children.clear();
        for (NodeId id = source.firstChild(parent.from); id != NONE;
             id = source.node(id).nextSibling) {
            if (++copied % NODES_BETWEEN_QUESTIONS == 0 && !isWanted())
                return false;
            if ((source.node(id).flags & DEAD) != 0)
                continue;
            const NodeId copy = copyNode(source, id, parent.to);
            if (source.node(id).hasChildren())
                children.push_back({id, copy});
        }
        if (parent.to != ROOT && node(parent.to).hasChildren())
            mutableFamily(node(parent.to)).pairs |= source.pairsOfFamily(source.node(parent.from));
        // A node whose children were all dead may carry nothing but a name now.
        buryIfDead(parent.to);
        parents.insert(parents.end(), children.rbegin(), children.rend());
    }
    counts_ = source.counts_;
    return true;
}

PathTree::NodeId PathTree::copyNode(const PathTree &source, NodeId id, NodeId parent)
{
    const Node &original = source.node(id);
    const std::string_view name = source.name(original);
    const NodeId copy = allocate();
    mutableChunkOf(copy).below[copy & CHUNK_MASK] = source.below(id);
    mutableNode(copy) = {.parent = parent,
                         .name = names_.take(name),
                         .textLength = original.textLength,
                         .nameLength = original.nameLength,
                         .flags = static_cast<Flags>(original.flags & COUNTED_FLAGS)};
    children_.insert(hashOf(name, parent), copy);
    append(parent, copy);
    return copy;
}

void PathTree::replaceBy(PathTree &other)
{
    require(holds_ == 0 && other.holds_ == 0, "a tree that is replaced is not held");
    std::swap(chunks_, other.chunks_);
    std::swap(used_, other.used_);
    std::swap(families_, other.families_);
    std::swap(usedFamilies_, other.usedFamilies_);
    std::swap(freeFamilies_, other.freeFamilies_);
    std::swap(names_, other.names_);
    std::swap(children_, other.children_);
    std::swap(hasTable_, other.hasTable_);
    std::swap(trail_, other.trail_);
    std::swap(counts_, other.counts_);
    std::swap(dead_, other.dead_);
    std::swap(scattered_, other.scattered_);
    std::swap(parentsOfDead_, other.parentsOfDead_);
    std::swap(givenUp_, other.givenUp_);
    std::swap(free_, other.free_);
    ++generation_;
    ++changes_;
    ++other.generation_;
    ++other.changes_;
}

} // namespace quillon
