#pragma once

#include "matching/NameGains.h"
#include "matching/PruningRates.h"
#include "matching/TreeSearch.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillon {

/// Walks parts of the tree for one search, on one thread.
template <typename Rule>
class TreeSearchWorker
{
public:
    using Work = typename TreeSearch<Rule>::Work;

    explicit TreeSearchWorker(TreeSearch<Rule> &search);

    /// Walks the work and everything below it, except the parts that it gives to other workers.
    /// Ends early when the tree was emptied or exchanged meanwhile. The caller holds the index's
    /// lock shared.
    void walk(const Work &work);

private:
    using Node = PathTree::Node;
    using NodeId = PathTree::NodeId;
    using UnitScorer = typename Rule::UnitScorer;
    using UnitState = typename UnitScorer::State;
    using State = typename Rule::Scorer::State;

    /// Stands for the children of one node that are still to be visited.
    struct Level
    {
        NodeId parent = PathTree::NONE;
        NodeId next = PathTree::NONE;
        /// The parent's text and the slash behind it hold so much of the query, see
        /// QueryProgress.h.
        std::size_t held = 0;
        /// The parent's text with the slash has this length, which is exact where texts are scored.
        std::size_t position = 0;
        /// It is true when units belong to this level.
        bool hasUnits = false;
        UnitState units;
        /// It is true when state belongs to this level.
        bool hasState = false;
        State state;
    };

    /// Says which texts can be among the best as far as is known.
    struct Hope
    {
        bool text = true;
        bool below = true;
    };

    void descendTo(const Work &work);
    bool stepAside() NO_THREAD_SAFETY_ANALYSIS;
    void shareWork();
    Hope hopeOf(NodeId id, const Node &node);
    void visit(NodeId id, const Node &node, Hope hope);
    std::size_t heldBehind(const Node &node);
    void push(NodeId id, const Node &node, std::size_t held);
    void addIfGood(NodeId id, const Node &node);
    bool isBelowThreshold(const Node &node);
    bool hasSharedGains(const Node &node);
    void computeGains(const Node &node);
    int rankByGains(const Node &node);
    void computeUnits(std::size_t depth);
    void computeState(std::size_t depth);
    std::string_view parentName(const Level &level) const;

    TreeSearch<Rule> &search_;
    const PathTree &tree_;
    const std::string_view query_;
    std::vector<Level> levels_;
    std::size_t depth_ = 0;
    unsigned visits_ = 0;
    NameGains gains_;
    PruningRates rates_;
    State stateOfText_;
};

extern template class TreeSearchWorker<WholePathRule>;
extern template class TreeSearchWorker<NamesFirstRule>;
extern template class TreeSearchWorker<WordsRule<WholePathRule>>;
extern template class TreeSearchWorker<WordsRule<NamesFirstRule>>;

} // namespace quillon
