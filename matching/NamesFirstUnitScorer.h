#pragma once

#include "matching/ByteClasses.h"
#include "matching/NamesFirstScore.h"
#include "matching/PathTree.h"
#include "matching/ShortQuery.h"
#include "matching/TopHits.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

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
    /// Element i is for texts that continue a state at the beginning of a name and match exactly
    /// the query's bytes from i on behind it: their score before byte i, if that byte starts a run
    /// or continues one. The last element is for texts that match nothing behind.
    struct Start
    {
        int apart = 0;
        int beforeRun = 0;
    };
    using Starts = std::array<Start, LONGEST_QUERY + 1>;

    /// The query has 1 to LONGEST_QUERY bytes.
    explicit NamesFirstUnitScorer(std::string_view query);

    /// Returns the state of the empty text.
    State initialState() const;
    /// Returns in "to" the state of a text whose own name this is. The state is that of the text's
    /// beginning up to the slash before the name. The position plays no part.
    void extendByName(const State &from, State &to, std::size_t position,
                      std::string_view name) const;
    /// Returns in "to" the state behind the name and a slash.
    void enterName(const State &from, State &to, std::size_t position, std::string_view name) const;
    /// A text's own name counts otherwise than the names above it.
    static constexpr bool ENTERS_TEXTS = false;
    /// Returns the rank of the node's text, which matches.
    int rank(const State &state, const PathTree::Node &node) const;
    void computeStarts(const State &state, std::size_t position, Starts &starts) const;
    /// Returns the highest rank that the node's text, or any text below it, can have. The starts
    /// are those of its parent, and below is PathTree::below() of the node.
    int bound(const Starts &starts, const PathTree::Node &node, ByteClassSet below) const;

    /// Returns the least rank that may reach the hit.
    static int rankToReach(const Hit &hit);

private:
    static int startInside(const ShortQuery::Row &row, BytePairSet pairsBelow, ByteClassSet below);
    static int earnedInRun(const ShortQuery::Row &row, BytePairSet pairsBelow, ByteClassSet below);
    void extend(State &state, std::string_view bytes, std::int16_t gap) const;
    void matchByte(State &state, std::int16_t lead, std::int16_t earned, bool isSeparator,
                   std::int16_t gap, const lanes::Vector *matched) const;

    const ShortQuery query_;
    /// What a slash costs each row that does not match it.
    ShortQuery::Vectors slashGaps_{};
};

} // namespace quillon
