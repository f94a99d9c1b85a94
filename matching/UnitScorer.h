#pragma once

#include "matching/ByteClasses.h"
#include "matching/PathTree.h"

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
    /// A longer query would need more vectors than this scorer is worth.
    static constexpr std::size_t LONGEST_QUERY = 32;
    static constexpr int UNITS_PER_POINT = 200;

    using Vector __attribute__((vector_size(16))) = std::int16_t;
    static constexpr std::size_t LANES = sizeof(Vector) / sizeof(std::int16_t);
    static constexpr std::size_t MOST_VECTORS = LONGEST_QUERY / LANES;

    /// Says what a text's beginning means for the score. Each lane stands for a query byte: best is
    /// the best score with that byte matched anywhere so far, ending with it matched by the last
    /// byte.
    struct State
    {
        std::array<Vector, MOST_VECTORS> best;
        std::array<Vector, MOST_VECTORS> ending;
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
    /// Carries the state of a text over the bytes that follow. The text has position bytes, at most
    /// scoring::MAX_LENGTH, and previous is the last of them. Both states may be the same object.
    void extend(const State &from, State &to, std::size_t position, char previous,
                std::string_view bytes) const;
    /// Returns the score of a text that is longer than the query. It is below every real score
    /// where the text does not match.
    int score(const State &state) const;
    void computeStarts(const State &state, std::size_t position, Starts &starts) const;
    /// Returns the most that the node's text, or any text below it, can score. The starts are those
    /// of its parent, and below is PathTree::below() of the node.
    int bound(const Starts &starts, const PathTree::Node &node, ByteClassSet below) const;

    /// Returns the least number of units that may reach the score.
    static int unitsToReach(double score);

private:
    struct Row;
    static int bonusInside(const Row &row, BytePairSet pairsBelow, ByteClassSet below);
    void matchByte(State &state, std::size_t position, std::int16_t earned,
                   const Vector *matched) const;

    std::size_t rows_;
    std::size_t vectors_;
    /// Gives each byte its entry of masks_, which is 0 for a byte that the query does not hold.
    std::array<std::uint8_t, 256> maskOf_{};
    /// A mask has all ones in the lanes of the query bytes that a text's byte matches.
    std::vector<std::array<Vector, MOST_VECTORS>> masks_;
    std::array<Vector, MOST_VECTORS> gaps_{};
    struct Row
    {
        /// The classes that a text must hold to match the query from this byte on. The scorer takes
        /// a capital for its small letter.
        ByteClassSet needed = 0;
        /// The pairs of this byte with the query byte before it, with a slash, and with the other
        /// separators.
        BytePairSet behindPrevious = 0;
        BytePairSet behindSlash = 0;
        BytePairSet behindSeparator = 0;
        bool isLetter = false;
    };
    std::array<Row, LONGEST_QUERY> queryRows_{};
};

} // namespace quillon
