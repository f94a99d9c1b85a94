// How a query is answered from the tree
//
// The walk goes through the tree depth first and carries down what a node's text means for
// everything below it:
//  - how much of the query it uses up: the subsequence test is greedy, so a text continues where
//    its beginning stopped;
//  - the scorer's state behind it, which is computed only when something below needs it: in units
//    to decide what is worth a closer look, in doubles for the score itself.
// A subtree is left out when a byte that the query still needs does not occur in it. Siblings are
// tested for that in runs, at the speed of memory (PathTree::skipSiblingsWithout). Once enough hits
// are held, a subtree is also left out when no text in it can reach the worst hit. Its bound
// (UnitScorer::bound) takes the best that the beginning allows for the query bytes that can still
// be matched below, the pairs of bytes that occur there, and the gaps that the name's length
// forces: most leaves are settled from the 40 bytes of their node, without reading their names.
// A text as long as the query scores infinity, so nodes of up to that length are never left out.

#include "matching/TreeSearchWorker.h"

#include "matching/FuzzyScore.h"

#include <algorithm>

namespace quillon {

namespace {

/// After so many visits, some 10 to 100 microseconds, a worker checks for waiting writers and idle
/// workers.
constexpr unsigned VISITS_PER_SLICE = 512;

/// Returns the last byte of a text that ends in the component, behind a slash.
char lastByte(std::string_view component)
{
    return component.empty() ? '/' : component.back();
}

} // namespace

TreeSearchWorker::TreeSearchWorker(TreeSearch &search)
    : search_(search),
      tree_(search.index_.tree),
      query_(search.query_),
      hits_(search.index_.tree, search.top_)
{}

bool TreeSearchWorker::walk(const TreeSearch::Work &work)
{
    descendTo(work);
    const std::size_t top = depth_;
    while (true) {
        if (++visits_ % VISITS_PER_SLICE == 0 && !stepAside())
            return false;
        Level &level = levels_[depth_];
        const NodeId id = tree_.skipSiblingsWithout(search_.needed_[level.consumed], level.next);
        if (id == PathTree::NONE) {
            if (depth_ == top)
                return true;
            --depth_;
            continue;
        }
        const Node &node = tree_.node(id);
        level.next = node.nextSibling;
        if (!isHopeless(id, node))
            visit(id, node);
    }
}

void TreeSearchWorker::descendTo(const TreeSearch::Work &work)
{
    std::vector<NodeId> ancestors;
    for (NodeId id = work.parent; id != PathTree::ROOT; id = tree_.node(id).parent)
        ancestors.push_back(id);
    levels_.resize(std::max(levels_.size(), ancestors.size() + 2));
    depth_ = 0;
    Level &root = levels_.front();
    root.parent = PathTree::ROOT;
    root.next = PathTree::NONE;
    if (search_.unitScorer_ && !root.hasUnits) {
        root.units = search_.unitScorer_->initialState();
        search_.unitScorer_->computeStarts(root.units, 0, root.starts);
        root.hasUnits = true;
    }
    if (search_.scorer_ && !root.hasState) {
        root.state = search_.scorer_->initialState();
        root.hasState = true;
    }
    for (auto id = ancestors.rbegin(); id != ancestors.rend(); ++id) {
        const Node &node = tree_.node(*id);
        push(*id, node, consume(levels_[depth_].consumed, tree_.name(node)));
        levels_[depth_].next = PathTree::NONE;
    }
    levels_[depth_].next = work.first;
}

bool TreeSearchWorker::stepAside()
{
    if (search_.isWorkWanted())
        shareWork();
    if (!search_.letsWritersIn_ || !search_.index_.lock.isWriterWaiting())
        return true;
    search_.index_.lock.yieldShared();
    return tree_.generation() == search_.generation_;
}

void TreeSearchWorker::shareWork()
{
    // The children highest up are likely to have the most below them.
    for (std::size_t depth = 0; depth <= depth_; ++depth) {
        Level &level = levels_[depth];
        if (level.next != PathTree::NONE) {
            search_.give({level.parent, level.next});
            level.next = PathTree::NONE;
            return;
        }
    }
}

bool TreeSearchWorker::isHopeless(NodeId id, const Node &node)
{
    const std::size_t n = query_.size();
    Level &level = levels_[depth_];
    if ((search_.needed_[level.consumed] & ~tree_.below(id)) != 0)
        return true;
    const int threshold = search_.threshold_.load(std::memory_order_relaxed);
    if (threshold == TreeSearch::NO_THRESHOLD || node.textLength <= n)
        return false;
    if (node.textLength > scoring::MAX_LENGTH)
        return true;
    if (!search_.unitScorer_)
        return false;
    if (!level.hasUnits)
        computeUnits(depth_);
    return search_.unitScorer_->bound(level.starts, node, tree_.below(id)) < threshold;
}

void TreeSearchWorker::visit(NodeId id, const Node &node)
{
    const std::size_t consumed = consume(levels_[depth_].consumed, tree_.name(node));
    hasUnitsOfText_ = false;
    if ((node.flags & PathTree::CANDIDATE) != 0 && consumed == query_.size())
        addIfGood(id, node, depth_);
    if (node.firstChild == PathTree::NONE)
        return;
    push(id, node, consumed);
    if (hasUnitsOfText_) {
        Level &level = levels_[depth_];
        level.units = unitsOfText_;
        finishUnits(level, lastByte(tree_.name(node)));
    }
}

void TreeSearchWorker::push(NodeId id, const Node &node, std::size_t consumed)
{
    ++depth_;
    if (levels_.size() == depth_)
        levels_.emplace_back();
    Level &level = levels_[depth_];
    level.parent = id;
    level.next = node.firstChild;
    const bool usesSlash = consumed < query_.size() && query_[consumed] == '/';
    level.consumed = usesSlash ? consumed + 1 : consumed;
    level.position = std::size_t{node.textLength} + 1;
    level.hasUnits = false;
    level.hasState = false;
}

void TreeSearchWorker::addIfGood(NodeId id, const Node &node, std::size_t above)
{
    if (!search_.scorer_ || node.textLength > scoring::MAX_LENGTH) {
        add({scoring::SCORE_MIN, id});
        return;
    }
    if (node.textLength == query_.size()) {
        add({scoring::SCORE_MAX, id});
        return;
    }
    if (isBelowThreshold(node, above))
        return;
    if (!levels_[above].hasState)
        computeState(above);
    stateOfText_ = levels_[above].state;
    search_.scorer_->extend(stateOfText_, levels_[above].position, '/', tree_.name(node));
    add({search_.scorer_->score(stateOfText_), id});
}

bool TreeSearchWorker::isBelowThreshold(const Node &node, std::size_t above)
{
    const int threshold = search_.threshold_.load(std::memory_order_relaxed);
    if (threshold == TreeSearch::NO_THRESHOLD || !search_.unitScorer_)
        return false;
    if (!levels_[above].hasUnits)
        computeUnits(above);
    search_.unitScorer_->extend(levels_[above].units, unitsOfText_, levels_[above].position, '/',
                                tree_.name(node));
    hasUnitsOfText_ = true;
    return search_.unitScorer_->score(unitsOfText_) < threshold;
}

void TreeSearchWorker::add(const Hit &hit)
{
    if (!hits_.wants(hit) || search_.used_.contains(hit.node))
        return;
    hits_.add(hit);
    if (hits_.isFull())
        search_.raiseThreshold(hits_.worst().score);
}

std::size_t TreeSearchWorker::consume(std::size_t consumed, std::string_view bytes) const
{
    for (const char byte : bytes) {
        if (consumed == query_.size())
            break;
        consumed += scoring::matchesByte(query_[consumed], byte) ? 1U : 0U;
    }
    return consumed;
}

std::string_view TreeSearchWorker::parentName(const Level &level) const
{
    return tree_.name(tree_.node(level.parent));
}

void TreeSearchWorker::computeUnits(std::size_t depth)
{
    std::size_t known = depth;
    while (!levels_[known].hasUnits)
        --known;
    for (; known < depth; ++known) {
        const Level &above = levels_[known];
        Level &level = levels_[known + 1];
        const std::string_view name = parentName(level);
        search_.unitScorer_->extend(above.units, level.units, above.position, '/', name);
        finishUnits(level, lastByte(name));
    }
}

void TreeSearchWorker::finishUnits(Level &level, char lastByte)
{
    search_.unitScorer_->extend(level.units, level.units, level.position - 1, lastByte, "/");
    search_.unitScorer_->computeStarts(level.units, level.position, level.starts);
    level.hasUnits = true;
}

void TreeSearchWorker::computeState(std::size_t depth)
{
    std::size_t known = depth;
    while (!levels_[known].hasState)
        --known;
    for (; known < depth; ++known) {
        const Level &above = levels_[known];
        Level &level = levels_[known + 1];
        const std::string_view name = parentName(level);
        level.state = above.state;
        search_.scorer_->extend(level.state, above.position, '/', name);
        search_.scorer_->extend(level.state, level.position - 1, lastByte(name), "/");
        level.hasState = true;
    }
}

} // namespace quillon
