// How a query is answered from the tree
//
// The walk goes through the tree depth first and carries down what a node's text means for
// everything below it:
//  - how much of the query it holds (QueryProgress.h), so that a text continues where its beginning
//    stopped;
//  - the scorer's state behind it, which is computed only when something below needs it: in units
//    to decide what is worth a closer look, in doubles for the score itself.
// A subtree is left out when a byte that the query still needs does not occur in it. Siblings are
// tested for that in runs, at the speed of memory (PathTree::skipSiblingsWithout). Once enough hits
// are held, a subtree is also left out when no text in it can reach the worst hit. Its bounds
// (UnitScorer::bounds) take the best that the beginning allows for the query bytes that can still
// be matched below, the pairs of bytes that occur there, how many levels there are, and the gaps
// that the name's length forces. Where bounds seldom leave anything out, the walk does without them
// (PruningRates.h).
//
// Most folders share their names with others. What a name adds to any beginning as the last name of
// a text is computed once for all of them (NameGains.h), and with the state of the beginning it is
// the score. So a folder without children is settled in a few steps, and often by its name alone.
// A text as long as the query scores infinity in the order by the whole path, so nodes of up to
// that length are never left out there.
//
// All orders of rows share this walk. What differs is a type each (RankingRules.h), chosen once a
// query: how a name extends a state, the bounds, and the rank, the whole number that is compared
// with that of the worst hit. With names first, a text's own name costs what the names above do
// not, so what bounds a subtree is the shortest name in it. Words in any order are a third kind of
// type, which wraps that of an order: it looks for each word in the folded names, and adds up what
// the words score. The scorers in whole numbers take all words at once, one number for each byte.

#include "matching/TreeSearchWorker.h"

#include "matching/FuzzyScore.h"

#include <algorithm>

namespace quillon {

namespace {

/// After so many visits, some 10 to 100 microseconds, a worker checks for waiting writers and idle
/// workers.
constexpr unsigned VISITS_PER_SLICE = 512;
/// Where so many folders have a name, computing its gains costs less than bounding each of them.
constexpr std::uint32_t WORTH_GAINS = 4;

} // namespace

template <typename Rule>
TreeSearchWorker<Rule>::TreeSearchWorker(TreeSearch<Rule> &search)
    : search_(search),
      tree_(search.index_.tree),
      query_(search.query_),
      gains_(search.unitScorer_ ? search.unitScorer_->gainVectors() : 0)
{}

template <typename Rule>
void TreeSearchWorker<Rule>::walk(const Work &work)
{
    descendTo(work);
    const std::size_t top = depth_;
    while (true) {
        if (++visits_ % VISITS_PER_SLICE == 0 && !stepAside())
            return;
        Level &level = levels_[depth_];
        const NodeId id =
            tree_.skipSiblingsWithout(search_.progress_.needed(level.held), level.next);
        if (id == PathTree::NONE) {
            if (depth_ == top)
                return;
            --depth_;
            continue;
        }
        const Node &node = tree_.node(id);
        level.next = node.nextSibling;
        const Hope hope = hopeOf(id, node);
        if (hope.text || hope.below)
            visit(id, node, hope);
    }
}

template <typename Rule>
void TreeSearchWorker<Rule>::descendTo(const Work &work)
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
        root.hasUnits = true;
    }
    if (search_.scorer_ && !root.hasState) {
        root.state = search_.scorer_->initialState();
        root.hasState = true;
    }
    for (auto id = ancestors.rbegin(); id != ancestors.rend(); ++id) {
        const Node &node = tree_.node(*id);
        push(*id, node,
             search_.progress_.behindName(levels_[depth_].held, Rule::name(tree_, node)));
        levels_[depth_].next = PathTree::NONE;
    }
    levels_[depth_].next = work.first;
}

template <typename Rule>
bool TreeSearchWorker<Rule>::stepAside()
{
    if (search_.isWorkWanted())
        shareWork();
    if (!search_.letsWritersIn_ || !search_.index_.lock.isWriterWaiting())
        return true;
    search_.index_.lock.yieldShared();
    return tree_.generation() == search_.generation_;
}

template <typename Rule>
void TreeSearchWorker<Rule>::shareWork()
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

template <typename Rule>
auto TreeSearchWorker<Rule>::hopeOf(NodeId id, const Node &node) -> Hope
{
    constexpr Hope NONE = {.text = false, .below = false};
    Level &level = levels_[depth_];
    if ((search_.progress_.needed(level.held) & ~tree_.below(id)) != 0)
        return NONE;
    const int threshold = search_.threshold_.load(std::memory_order_relaxed);
    if (threshold == TreeSearch<Rule>::NO_THRESHOLD ||
        (Rule::IS_EQUAL_LENGTH_BEST && node.textLength <= query_.size()))
        return {};
    if (node.textLength > scoring::MAX_LENGTH)
        return NONE;
    if (!search_.unitScorer_)
        return {};
    if (!node.hasChildren() && hasSharedGains(node))
        return {.text = UnitScorer::rank(gains_.most(node.name), node) >= threshold &&
                        rankByGains(node) >= threshold,
                .below = false};
    const ByteClassSet below = tree_.below(id);
    const unsigned levels = node.hasChildren() ? mostLevels(below) : 0;
    if (levels > 0 && !rates_.isWorthBound(levels))
        return {};
    if (!level.hasUnits)
        computeUnits(depth_);
    const auto boundsWith = [&](const BytePairSet &pairs) {
        return search_.unitScorer_->bounds(level.units, level.position, node, below, pairs,
                                           UnitScorer::scoreToReach(threshold));
    };
    const Bounds scores = node.hasChildren() ? boundsWith(tree_.pairsOfFamily(node))
                                             : boundsWith(tree_.pairsOfName(node));
    const Bounds bounds = UnitScorer::ranks(scores, node, below);
    const Hope hope = {.text = bounds.text >= threshold, .below = bounds.below >= threshold};
    if (levels > 0)
        rates_.learn(levels, !hope.below);
    return hope;
}

template <typename Rule>
void TreeSearchWorker<Rule>::visit(NodeId id, const Node &node, Hope hope)
{
    if (hope.below && node.hasChildren())
        tree_.prefetch(tree_.firstChild(node));
    const std::size_t held = heldBehind(node);
    if (hope.text && (node.flags & PathTree::CANDIDATE) != 0 && search_.progress_.isWhole(held))
        addIfGood(id, node);
    if (hope.below && node.hasChildren())
        push(id, node, held);
}

/// Returns how much of the query the node's text holds.
template <typename Rule>
std::size_t TreeSearchWorker<Rule>::heldBehind(const Node &node)
{
    const std::size_t before = levels_[depth_].held;
    if constexpr (Rule::ARE_WORDS_APART) {
        if (search_.unitScorer_ && node.textLength <= scoring::MAX_LENGTH && hasSharedGains(node))
            return before | search_.unitScorer_->wordsHeld(gains_.gains(node.name));
    }
    return search_.progress_.behindName(before, Rule::name(tree_, node));
}

template <typename Rule>
void TreeSearchWorker<Rule>::push(NodeId id, const Node &node, std::size_t held)
{
    ++depth_;
    if (levels_.size() == depth_)
        levels_.emplace_back();
    Level &level = levels_[depth_];
    level.parent = id;
    level.next = tree_.firstChild(node);
    level.held = search_.progress_.behindSlash(held);
    level.position = std::size_t{node.textLength} + 1;
    level.hasUnits = false;
    level.hasState = false;
}

template <typename Rule>
void TreeSearchWorker<Rule>::addIfGood(NodeId id, const Node &node)
{
    const Level &above = levels_[depth_];
    if (!search_.scorer_ || node.textLength > scoring::MAX_LENGTH) {
        search_.add({scoring::SCORE_MIN, id});
        return;
    }
    if (Rule::IS_EQUAL_LENGTH_BEST && node.textLength <= query_.size() &&
        Rule::isBest(query_, node.textLength)) {
        search_.add({scoring::SCORE_MAX, id});
        return;
    }
    if (isBelowThreshold(node))
        return;
    if (!above.hasState)
        computeState(depth_);
    stateOfText_ = above.state;
    search_.scorer_->extendByName(stateOfText_, above.position, Rule::name(tree_, node));
    search_.add(Rule::hit(search_.scorer_->score(stateOfText_), id, node));
}

template <typename Rule>
bool TreeSearchWorker<Rule>::isBelowThreshold(const Node &node)
{
    const int threshold = search_.threshold_.load(std::memory_order_relaxed);
    if (threshold == TreeSearch<Rule>::NO_THRESHOLD || !search_.unitScorer_)
        return false;
    if (!gains_.has(node.name))
        computeGains(node);
    return rankByGains(node) < threshold;
}

/// Returns true where the gains of the name are there, or now, since that pays.
template <typename Rule>
bool TreeSearchWorker<Rule>::hasSharedGains(const Node &node)
{
    if (gains_.has(node.name))
        return true;
    if (tree_.names().uses(node.name) < WORTH_GAINS)
        return false;
    computeGains(node);
    return true;
}

template <typename Rule>
void TreeSearchWorker<Rule>::computeGains(const Node &node)
{
    gains_.add(node.name, [&](lanes::Vector *gains) {
        return search_.unitScorer_->computeGains(Rule::name(tree_, node), gains);
    });
}

template <typename Rule>
int TreeSearchWorker<Rule>::rankByGains(const Node &node)
{
    const Level &above = levels_[depth_];
    if (!above.hasUnits)
        computeUnits(depth_);
    const lanes::Vector *gains = gains_.gains(node.name);
    return UnitScorer::rank(search_.unitScorer_->score(above.units, above.position, gains), node);
}

template <typename Rule>
std::string_view TreeSearchWorker<Rule>::parentName(const Level &level) const
{
    return Rule::name(tree_, tree_.node(level.parent));
}

template <typename Rule>
void TreeSearchWorker<Rule>::computeUnits(std::size_t depth)
{
    std::size_t known = depth;
    while (!levels_[known].hasUnits)
        --known;
    for (; known < depth; ++known) {
        const Level &above = levels_[known];
        Level &level = levels_[known + 1];
        search_.unitScorer_->enterName(above.units, level.units, above.position, parentName(level));
        level.hasUnits = true;
    }
}

template <typename Rule>
void TreeSearchWorker<Rule>::computeState(std::size_t depth)
{
    std::size_t known = depth;
    while (!levels_[known].hasState)
        --known;
    for (; known < depth; ++known) {
        const Level &above = levels_[known];
        Level &level = levels_[known + 1];
        level.state = above.state;
        search_.scorer_->enterName(level.state, above.position, parentName(level));
        level.hasState = true;
    }
}

template class TreeSearchWorker<WholePathRule>;
template class TreeSearchWorker<NamesFirstRule>;
template class TreeSearchWorker<WordsRule<WholePathRule>>;
template class TreeSearchWorker<WordsRule<NamesFirstRule>>;

} // namespace quillon
