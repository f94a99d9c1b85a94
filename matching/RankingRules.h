#pragma once

#include "matching/ColumnScorer.h"
#include "matching/FuzzyScore.h"
#include "matching/NamesFirstScore.h"
#include "matching/NamesFirstUnitScorer.h"
#include "matching/UnitScorer.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace quillon {

// Each of these types is all that a search over the tree has to know of an order of rows: the plain
// rule, the scorer that carries it from a beginning to what continues it, the scorer in whole
// numbers that finds the few texts that are worth an exact score, and the bound.

/// Ranks as fuzzyScore() does, texts of equal score by their bytes alone.
struct WholePathRule
{
    using Scorer = ColumnScorer;
    using UnitScorer = quillon::UnitScorer;
    /// A text as long as the query that matches it is the best.
    static constexpr bool IS_EQUAL_LENGTH_BEST = true;

    static double score(std::string_view query, std::string_view text)
    {
        return fuzzyScore(query, text);
    }
    static Hit hit(double score, PathTree::NodeId id, const PathTree::Node &)
    {
        return {.score = score, .node = id};
    }
};

/// Ranks as namesFirstScore() does, texts of equal score by their length and then by their bytes.
struct NamesFirstRule
{
    /// Carries the plain rule from name to name. Immutable; safe from every thread.
    class Scorer
    {
    public:
        using State = namesfirst::State;

        explicit Scorer(std::string_view query) : query_(query) {}

        State initialState() const { return State(query_.size()); }
        void extendByName(State &state, std::size_t, std::string_view name) const
        {
            state.passOwnName(query_, name);
        }
        void enterName(State &state, std::size_t, std::string_view name) const
        {
            state.passParent(query_, name);
        }
        double score(const State &state) const
        {
            return static_cast<double>(state.score()) / namesfirst::HUNDREDTHS;
        }

    private:
        const std::string query_;
    };
    using UnitScorer = NamesFirstUnitScorer;
    static constexpr bool IS_EQUAL_LENGTH_BEST = false;

    static double score(std::string_view query, std::string_view text)
    {
        return namesFirstScore(query, text);
    }
    static Hit hit(double score, PathTree::NodeId id, const PathTree::Node &node)
    {
        const bool isScored = score != scoring::SCORE_MIN;
        return {.score = score, .node = id, .length = isScored ? node.textLength : 0U};
    }
};

} // namespace quillon
