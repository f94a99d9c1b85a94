// How a query is answered from the tree
//
// The walk goes through the tree depth first and carries down what a node's text means for
// everything below it:
//  - how much of the query it uses up: the subsequence test is greedy, so a text goes on where its
//    beginning stopped;
//  - the scorer's state behind it, computed only when something below needs it.
// A subtree is left out when a byte that the query still needs does not occur in it, or, once
// enough hits are held, when no text in it can reach the worst of them. The bound of a subtree
// takes the best that the beginning allows (ColumnScorer::potentials) for the query bytes that can
// still be matched below, and the gaps that the name's length forces: most leaves are settled from
// the 32 bytes of their node, without a look at their names.
// A text as long as the query scores infinity, so nodes of up to that length are never left out.

#include "matching/TreeSearchWorker.h"

#include "matching/FuzzyScore.h"

#include <algorithm>

namespace quillon {

namespace {

/// Sums of up to 1024 multiples of 0.005 are off by less than 1e-12.
constexpr double ROUNDING_SLACK = 1e-9;
/// Nodes between two looks at waiting writers and idle workers: some 10 to 50 microseconds.
constexpr unsigned VISITS_PER_SLICE = 512;

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
        const NodeId id = levels_[depth_].next;
        if (id == PathTree::NONE) {
            if (depth_ == top)
                return true;
            --depth_;
            continue;
        }
        const Node &node = tree_.node(id);
        levels_[depth_].next = node.nextSibling;
        if (!isHopeless(node))
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
    if (search_.scorer_ && !root.hasState) {
        root.state = search_.scorer_->initialState();
        search_.scorer_->potentials(root.state, 0, root.bounds);
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
    if (!search_.index_.lock.isWriterWaiting())
        return true;
    search_.index_.lock.yieldShared();
    return tree_.generation() == search_.generation_;
}

void TreeSearchWorker::shareWork()
{
    // The children left highest up are likely to have the most below them.
    for (std::size_t depth = 0; depth <= depth_; ++depth) {
        Level &level = levels_[depth];
        if (level.next != PathTree::NONE) {
            search_.give({level.parent, level.next});
            level.next = PathTree::NONE;
            return;
        }
    }
}

bool TreeSearchWorker::isHopeless(const Node &node)
{
    const std::size_t n = query_.size();
    Level &level = levels_[depth_];
    if ((search_.needed_[level.consumed] & ~node.below) != 0)
        return true;
    const double threshold = search_.threshold_.load(std::memory_order_relaxed);
    if (threshold == scoring::SCORE_MIN || node.textLength <= n)
        return false;
    if (node.textLength > scoring::MAX_LENGTH)
        return true;
    if (!search_.scorer_)
        return false;
    if (!level.hasState)
        computeState(depth_);
    std::size_t first = n;
    while (first > 0 && (search_.scored_[first - 1] & ~node.below) == 0)
        --first;
    const std::size_t matchable = n - first;
    const std::size_t gaps = node.nameLength > matchable ? node.nameLength - matchable : 0;
    const double bound =
        level.bounds[first] + static_cast<double>(gaps) * scoring::GAP_TRAILING + ROUNDING_SLACK;
    return bound < threshold;
}

void TreeSearchWorker::visit(NodeId id, const Node &node)
{
    const std::size_t consumed = consume(levels_[depth_].consumed, tree_.name(node));
    const bool isMatch = (node.flags & PathTree::CANDIDATE) != 0 && consumed == query_.size();
    const bool isLeaf = node.firstChild == PathTree::NONE;
    if (!isLeaf)
        push(id, node, consumed);
    if (isMatch)
        scoreAndAdd(id, node, isLeaf ? nullptr : &levels_[depth_]);
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
    level.hasState = false;
}

void TreeSearchWorker::scoreAndAdd(NodeId id, const Node &node, Level *children)
{
    if (node.textLength == query_.size() && node.textLength <= scoring::MAX_LENGTH &&
        !query_.empty()) {
        add({scoring::SCORE_MAX, id});
        return;
    }
    if (!search_.scorer_ || node.textLength > scoring::MAX_LENGTH) {
        add({scoring::SCORE_MIN, id});
        return;
    }
    const std::size_t above = children == nullptr ? depth_ : depth_ - 1;
    if (!levels_[above].hasState)
        computeState(above);
    const Level &level = levels_[above];
    ColumnScorer::State &state = children == nullptr ? scratch_ : children->state;
    state = level.state;
    const std::string_view name = tree_.name(node);
    search_.scorer_->extend(state, level.position, '/', name);
    add({search_.scorer_->score(state), id});
    if (children != nullptr)
        finishState(*children, name.empty() ? '/' : name.back());
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

void TreeSearchWorker::computeState(std::size_t depth)
{
    std::size_t known = depth;
    while (!levels_[known].hasState)
        --known;
    for (; known < depth; ++known) {
        Level &level = levels_[known + 1];
        level.state = levels_[known].state;
        const std::string_view name = tree_.name(tree_.node(level.parent));
        search_.scorer_->extend(level.state, levels_[known].position, '/', name);
        finishState(level, name.empty() ? '/' : name.back());
    }
}

void TreeSearchWorker::finishState(Level &level, char lastByte)
{
    search_.scorer_->extend(level.state, level.position - 1, lastByte, "/");
    search_.scorer_->potentials(level.state, level.position, level.bounds);
    level.hasState = true;
}

} // namespace quillon
