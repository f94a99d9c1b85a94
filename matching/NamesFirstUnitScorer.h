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

    /// Each lane stands for a query byte: best is the best score with that byte matched anywhere so
    /// far, ending with it matched by the last byte or by one that only separators of words follow.
    struct Ways
    {
        ShortQuery::Vectors best;
        ShortQuery::Vectors ending;
    };
    /// Says what a text means for its own score and, as a beginning, for those of the texts below.
    /// The two differ in what the last name costs.
    struct State
    {
        Ways below;
        Ways text;
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
    /// Returns in "to" the state of a text that ends in the name. The state is that of the text's
    /// beginning up to the slash before the name, whose position plays no part. Where the text does
    /// not continue, the state is good for its rank alone.
    void extendByName(const State &from, State &to, std::size_t position, std::string_view name,
                      bool continues) const;
    /// Returns in "to" the state behind the name and a slash.
    void enterName(const State &from, State &to, std::size_t position, std::string_view name) const;
    /// Carries on what extendByName() has returned for these to the texts below.
    void enterText(State &state, std::size_t position, std::string_view name) const;
    /// Returns the score in hundredths of a text that matches.
    int score(const State &state) const;
    void computeStarts(const State &state, std::size_t position, Starts &starts) const;
    /// Returns the highest scores that the node's text and the texts below it can have. The starts
    /// are those of its parent, and below is PathTree::below() of the node.
    Bounds bounds(const Starts &starts, const PathTree::Node &node, ByteClassSet below) const;

    /// Returns the rank of the node's text with this score.
    static int rank(int score, const PathTree::Node &node);
    /// Returns the highest ranks that the node's text and the texts below it can have with these
    /// scores.
    static Bounds ranks(Bounds scores, const PathTree::Node &node, ByteClassSet below);

    /// Returns the least rank that may reach the hit.
    static int rankToReach(const Hit &hit);

private:
    void copy(const Ways &from, Ways &to) const;
    void extend(State &state, std::string_view name, bool isText, bool isBelow) const;
    void passUnmatched(Ways &ways, std::int16_t gaps, bool areSeparators, std::int16_t inRun) const;
    void matchByte(Ways &ways, std::int16_t lead, std::int16_t earned, bool isSeparator,
                   std::int16_t gap, const lanes::Vector *matched) const;

    const ShortQuery query_;
    /// What a slash costs each row that does not match it.
    ShortQuery::Vectors slashGaps_{};
};

} // namespace quillon
