#pragma once

#include "matching/ByteClasses.h"
#include "matching/PathTree.h"
#include "matching/ShortQuery.h"
#include "matching/TopHits.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace quillon {

/// Computes fuzzyScore() for one query in whole numbers, to find the few texts that are worth the
/// exact score. Every weight is a multiple of 0.005, so a score is a number of such units, up to
/// the rounding of the doubles. Eight query bytes are worked on at once, and a run of bytes that
/// the query does not hold is skipped in one step. Immutable; safe from every thread.
class UnitScorer
{
public:
    static constexpr std::size_t LONGEST_QUERY = ShortQuery::LONGEST;
    static constexpr int UNITS_PER_POINT = 200;

    /// Says what a text's beginning means for the score. Each lane stands for a query byte: best is
    /// the best score with that byte matched anywhere so far, ending with it matched by the last
    /// byte.
    struct State
    {
        ShortQuery::Vectors best;
        ShortQuery::Vectors ending;
    };
    /// Element i is for texts that continue a state at the beginning of a component and match
    /// exactly the query's bytes from i on behind it. "apart" is their score before byte i, if that
    /// byte earns a bonus or nothing; "consecutive" is their score with byte i, if it follows a
    /// match of the slash. The last element is for texts that match nothing behind.
    struct Start
    {
        int apart = 0;
        int consecutive = 0;
    };
    using Starts = std::array<Start, LONGEST_QUERY + 1>;

    /// The query has 1 to LONGEST_QUERY bytes.
    explicit UnitScorer(std::string_view query);

    /// Returns the state of the empty text.
    State initialState() const;
    /// Returns the state of a text that ends in the name. The state is that of the text's beginning
    /// up to the slash before the name, which has position bytes, at most scoring::MAX_LENGTH. Both
    /// states may be the same object. Whether the text continues plays no part.
    void extendByName(const State &from, State &to, std::size_t position, std::string_view name,
                      bool /*continues*/) const
    {
        extend(from, to, position, '/', name);
    }
    /// Does the same for the name and the slash behind it.
    void enterName(const State &from, State &to, std::size_t position, std::string_view name) const
    {
        extend(from, to, position, '/', name);
        enterText(to, position, name);
    }
    /// Carries on what extendByName() has returned for these to the texts below.
    void enterText(State &state, std::size_t position, std::string_view name) const
    {
        extend(state, state, position + name.size(), name.empty() ? '/' : name.back(), "/");
    }
    /// Returns the score in units of a text that is longer than the query. It is below every real
    /// score where the text does not match.
    int score(const State &state) const { return ShortQuery::at(state.best, query_.rows() - 1); }
    void computeStarts(const State &state, std::size_t position, Starts &starts) const;
    /// Returns the most units that the node's text, or any text below it, can score; both bounds
    /// are the same. The starts are those of its parent, and below is PathTree::below() of the
    /// node.
    Bounds bounds(const Starts &starts, const PathTree::Node &node, ByteClassSet below) const;

    /// Returns the number that orders texts, here the score itself, and the same of bounds.
    static int rank(int score, const PathTree::Node &) { return score; }
    static Bounds ranks(Bounds scores, const PathTree::Node &, ByteClassSet) { return scores; }
    /// Returns the least number of units that may reach the hit.
    static int rankToReach(const Hit &hit);

private:
    using Row = ShortQuery::Row;
    using Vector = lanes::Vector;

    void extend(const State &from, State &to, std::size_t position, char previous,
                std::string_view bytes) const;
    static int bonusInside(const Row &row, BytePairSet pairsBelow, ByteClassSet below);
    void matchByte(State &state, std::size_t position, std::int16_t earned,
                   const Vector *matched) const;

    const ShortQuery query_;
    ShortQuery::Vectors gaps_{};
};

} // namespace quillon
