#pragma once

#include "matching/ByteClasses.h"
#include "matching/PathTree.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace quillon {

/// fuzzyScore() for one query in whole numbers: every weight is a multiple of 0.005, so a score is
/// that many units, up to the rounding of the doubles. Eight query bytes are worked on at once,
/// and bytes that the query does not hold are passed over in one step. Tells which few texts are
/// worth the exact score. Immutable; safe from every thread.
class UnitScorer
{
public:
    /// Longer queries would need more vectors than this is worth.
    static constexpr std::size_t LONGEST_QUERY = 32;
    static constexpr int UNITS_PER_POINT = 200;

    using Vector __attribute__((vector_size(16))) = std::int16_t;
    static constexpr std::size_t LANES = sizeof(Vector) / sizeof(std::int16_t);
    static constexpr std::size_t MOST_VECTORS = LONGEST_QUERY / LANES;

    /// What a text's beginning means for the score; lanes stand for query bytes. The best score
    /// with the byte matched anywhere so far, and with it matched at the last byte.
    struct State
    {
        std::array<Vector, MOST_VECTORS> best;
        std::array<Vector, MOST_VECTORS> ending;
    };
    /// For texts that go on from a state at the beginning of a component and match just the query's
    /// bytes from i on behind it, element i: what they have from before byte i if that earns a
    /// bonus or nothing, and what they have with it if it follows a match on the slash. The last
    /// element is for texts that match nothing behind.
    struct Start
    {
        int apart = 0;
        int consecutive = 0;
    };
    using Starts = std::array<Start, LONGEST_QUERY + 1>;

    /// A query of 1 to LONGEST_QUERY bytes.
    explicit UnitScorer(std::string_view query);

    /// The state of the empty text.
    State initialState() const;
    /// The state from, of a text of position bytes (at most scoring::MAX_LENGTH) of which the last
    /// is previous, carried over the bytes that follow. May be done in place.
    void extend(const State &from, State &to, std::size_t position, char previous,
                std::string_view bytes) const;
    /// The score of a text longer than the query. Below every real score where there is none.
    int score(const State &state) const;
    void computeStarts(const State &state, std::size_t position, Starts &starts) const;
    /// The most that the node's text, or any below it, can score. The starts are those of its
    /// parent, below is PathTree::below() of the node.
    int bound(const Starts &starts, const PathTree::Node &node, ByteClassSet below) const;

    /// The least number of units that may reach the score.
    static int unitsToReach(double score);

private:
    struct Row;
    static int bonusInside(const Row &row, BytePairSet pairsBelow, ByteClassSet below);
    void matchByte(State &state, std::size_t position, std::int16_t earned,
                   const Vector *matched) const;

    std::size_t rows_;
    std::size_t vectors_;
    /// For each byte its entry of masks_; 0 for a byte that the query does not hold.
    std::array<std::uint8_t, 256> maskOf_{};
    /// All ones in the lanes of the query bytes that a text's byte matches.
    std::vector<std::array<Vector, MOST_VECTORS>> masks_;
    std::array<Vector, MOST_VECTORS> gaps_{};
    struct Row
    {
        /// What a text must hold to match the query from here on, to the scorer, which takes a
        /// capital for its small letter.
        ByteClassSet needed = 0;
        /// This byte behind the one before it, behind a slash, behind the other separators.
        BytePairSet behindPrevious = 0;
        BytePairSet behindSlash = 0;
        BytePairSet behindSeparator = 0;
        bool isLetter = false;
    };
    std::array<Row, LONGEST_QUERY> queryRows_{};
};

} // namespace quillon
