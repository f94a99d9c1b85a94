#pragma once

#include "matching/ByteClasses.h"
#include "matching/NamesFirstScore.h"
#include "matching/PathTree.h"
#include "matching/ShortQuery.h"
#include "matching/TopHits.h"

#include <cstddef>
#include <string_view>
#include <vector>

namespace quillon {

/// Computes namesFirstScore() for one query, eight query bytes at once. One number, the rank,
/// orders texts by score and then by length: the score in hundredths times 2048, and 1024 less the
/// length. Immutable; safe from every thread.
class NamesFirstUnitScorer
{
public:
    static constexpr std::size_t LONGEST_QUERY = ShortQuery::LONGEST;

    /// Says what a text's beginning means for the score. Each lane stands for a query byte: best is
    /// the best score with that byte matched anywhere so far, ending with it matched by the last
    /// byte or by one that only separators of words follow.
    struct State
    {
        ShortQuery::Vectors best;
        ShortQuery::Vectors ending;
    };

    /// The words have 1 to LONGEST_QUERY bytes in all. A text's score is the sum of those for each.
    explicit NamesFirstUnitScorer(const std::vector<std::string_view> &words);

    /// Returns the state of the empty text.
    State initialState() const;
    /// Returns the state behind the name and a slash. The position plays no part.
    void enterName(const State &from, State &to, std::size_t position, std::string_view name) const;
    /// The gains of a name are as for UnitScorer.
    std::size_t gainVectors() const { return 3 * query_.vectors(); }
    /// Computes the gains of a name of at most scoring::MAX_LENGTH bytes. Returns the highest score
    /// that they give with any beginning.
    int computeGains(std::string_view name, lanes::Vector *gains) const;
    /// Returns the score in hundredths of a text that matches, from the state of its beginning and
    /// the gains of its last name.
    int score(const State &state, std::size_t position, const lanes::Vector *gains) const;
    /// Returns a bit for each word that a name with these gains holds.
    std::size_t wordsHeld(const lanes::Vector *gains) const
    {
        return query_.wordsAbove(namesfirst::LOWEST, gains + 2 * query_.vectors());
    }
    /// Returns the highest scores that the node's text and the texts below it can have, or that
    /// both are enough. The state is the one before the node's name, and below and pairs are
    /// PathTree::below() and pairsBelow() of the node.
    Bounds bounds(const State &state, std::size_t position, const PathTree::Node &node,
                  ByteClassSet below, const BytePairSet &pairs, int enough) const;

    /// Returns the rank of the node's text with this score.
    static int rank(int score, const PathTree::Node &node);
    /// Returns a score that makes this rank whatever the text.
    static int scoreToReach(int rank);
    /// Returns the highest ranks that the node's text and the texts below it can have with these
    /// scores.
    static Bounds ranks(Bounds scores, const PathTree::Node &node, ByteClassSet below);

    /// Returns the least rank that may reach the hit.
    static int rankToReach(const Hit &hit);

private:
    template <std::size_t COUNT>
    void enterVectors(const State &from, State &to, std::string_view name) const;
    template <std::size_t COUNT>
    int computeGainVectors(std::string_view name, lanes::Vector *gains) const;
    /// Holds what the bounds take from a node.
    struct Facts
    {
        const BytePairSet &pairs;
        ByteClassSet below = 0;
        unsigned levels = 0;
        bool hasSeparator = false;
        int nameLength = 0;
        int leastNameLength = 0;
    };
    Bounds boundsOfWord(const State &state, const Facts &facts, int enough, std::size_t &end) const;

    const ShortQuery query_;
    /// A slash costs each row so much that does not match it.
    ShortQuery::Vectors slashGaps_{};
    /// No beginning of a text gives a row more.
    ShortQuery::Vectors most_{};
};

} // namespace quillon
