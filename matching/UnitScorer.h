#pragma once

#include "matching/ByteClasses.h"
#include "matching/FuzzyScore.h"
#include "matching/PathTree.h"
#include "matching/ShortQuery.h"
#include "matching/TopHits.h"

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
    /// Every real score is above it.
    static constexpr int LOWEST = -3 * int{scoring::MAX_LENGTH};

    /// Says what a text's beginning means for the score. Each lane stands for a query byte: best is
    /// the best score with that byte matched anywhere so far, ending with it matched by the last
    /// byte.
    struct State
    {
        ShortQuery::Vectors best;
        ShortQuery::Vectors ending;
    };
    /// The words have 1 to LONGEST_QUERY bytes in all. A text's score is the sum of those for each.
    explicit UnitScorer(const std::vector<std::string_view> &words);

    /// Returns the state of the empty text.
    State initialState() const;
    /// Returns the state behind the name and a slash. The state before is that of the text's
    /// beginning up to the slash before the name, which has position bytes, at most
    /// scoring::MAX_LENGTH.
    void enterName(const State &from, State &to, std::size_t position, std::string_view name) const;
    /// The gains of a name are what it adds as the last one of a text to each number of a state, in
    /// so many vectors: to those of best, to those of ending, and to the leading gap of a text
    /// whose beginning matches nothing.
    std::size_t gainVectors() const { return 3 * query_.vectors(); }
    /// Computes the gains of a name of at most scoring::MAX_LENGTH bytes. Returns the highest score
    /// that they give with any beginning.
    int computeGains(std::string_view name, lanes::Vector *gains) const;
    /// Returns the score in units of a text that is longer than the query, from the state of its
    /// beginning, of so many bytes, and the gains of its last name. It is below every real score
    /// where the text does not match.
    int score(const State &state, std::size_t position, const lanes::Vector *gains) const;
    /// Returns a bit for each word that a name with these gains holds.
    std::size_t wordsHeld(const lanes::Vector *gains) const
    {
        return query_.wordsAbove(LOWEST, gains + 2 * query_.vectors());
    }
    /// Returns the most units that the node's text, or any text below it, can score, or that it is
    /// enough; both bounds are the same. The state and the position are those before the node's
    /// name, and below and pairs are PathTree::below() and pairsBelow() of the node.
    Bounds bounds(const State &state, std::size_t position, const PathTree::Node &node,
                  ByteClassSet below, const BytePairSet &pairs, int enough) const;

    /// Returns the number that orders texts, here the score itself, and the same of bounds.
    static int rank(int score, const PathTree::Node &) { return score; }
    /// Returns a score that makes this rank whatever the text.
    static int scoreToReach(int rank) { return rank; }
    static Bounds ranks(Bounds scores, const PathTree::Node &, ByteClassSet) { return scores; }
    /// Returns the least number of units that may reach the hit.
    static int rankToReach(const Hit &hit);

private:
    using Row = ShortQuery::Row;
    using Vector = lanes::Vector;

    template <std::size_t COUNT>
    void enterVectors(const State &from, State &to, std::size_t position,
                      std::string_view name) const;
    template <std::size_t COUNT>
    int computeGainVectors(std::string_view name, lanes::Vector *gains) const;
    /// Holds what the bounds take from a node.
    struct Facts
    {
        const BytePairSet &pairs;
        ByteClassSet below = 0;
        unsigned levels = 0;
        int startOfWord = 0;
        int nameLength = 0;
    };
    int boundOfWord(const State &state, std::size_t position, const Facts &facts, int enough,
                    std::size_t &end) const;

    const ShortQuery query_;
    ShortQuery::Vectors gaps_{};
    /// No beginning of a text gives a row more.
    ShortQuery::Vectors most_{};
};

} // namespace quillon
