#include "matching/UnitScorer.h"

#include "matching/FuzzyScore.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillon {

namespace {

constexpr std::int16_t units(double score)
{
    const double scaled = score * UnitScorer::UNITS_PER_POINT;
    return static_cast<std::int16_t>(scaled < 0 ? scaled - 0.5 : scaled + 0.5);
}

constexpr std::int16_t LEADING = units(scoring::GAP_LEADING);
constexpr std::int16_t CONSECUTIVE = units(scoring::MATCH_CONSECUTIVE);
constexpr std::int16_t SLASH = units(scoring::BONUS_SLASH);
constexpr std::int16_t WORD = units(scoring::BONUS_WORD);
constexpr std::int16_t CAPITAL = units(scoring::BONUS_CAPITAL);
/// Stands for minus infinity. Real scores stay above -3 * MAX_LENGTH. A value that is computed from
/// this one stays below them, since at most LONGEST_QUERY consecutive matches are added, and above
/// the least 16-bit number, since at most two units are taken off for each of MAX_LENGTH bytes.
constexpr std::int16_t NO_SCORE = -12'000;
static_assert(NO_SCORE + int{UnitScorer::LONGEST_QUERY} * CONSECUTIVE <
              -3 * int{scoring::MAX_LENGTH});
static_assert(NO_SCORE - 2 * int{scoring::MAX_LENGTH} > std::numeric_limits<std::int16_t>::min());

} // namespace

UnitScorer::UnitScorer(std::string_view query) : query_(query)
{
    for (lanes::Vector &gaps : gaps_)
        gaps = lanes::all(units(scoring::GAP_INNER));
    const std::size_t last = query_.rows() - 1;
    gaps_[last / lanes::COUNT][last % lanes::COUNT] = units(scoring::GAP_TRAILING);
}

UnitScorer::State UnitScorer::initialState() const
{
    State state;
    state.best.fill(lanes::all(NO_SCORE));
    state.ending.fill(lanes::all(NO_SCORE));
    return state;
}

void UnitScorer::extend(const State &from, State &to, std::size_t position, char previous,
                        std::string_view bytes) const
{
    std::copy_n(from.best.begin(), query_.vectors(), to.best.begin());
    std::copy_n(from.ending.begin(), query_.vectors(), to.ending.begin());
    const char *const end = bytes.data() + bytes.size();
    for (const char *at = bytes.data(); at != end;) {
        const char *const begin = at;
        while (at != end && !query_.holds(*at))
            ++at;
        if (const auto passed = static_cast<std::int16_t>(at - begin); passed > 0) {
            for (std::size_t v = 0; v < query_.vectors(); ++v) {
                to.best[v] += gaps_[v] * passed;
                to.ending[v] = lanes::all(NO_SCORE);
            }
            position += static_cast<std::size_t>(passed);
            previous = at[-1];
        }
        if (at == end)
            return;
        const double earned = scoring::bonus(*at, previous);
        matchByte(to, position, units(earned), query_.matchedBy(*at));
        previous = *at++;
        ++position;
    }
}

void UnitScorer::matchByte(State &state, std::size_t position, std::int16_t earned,
                           const Vector *matched) const
{
    // The first query byte has no row above it, so its score is the leading gap and the bonus.
    Vector bestBelow = lanes::all(static_cast<std::int16_t>(static_cast<int>(position) * LEADING));
    Vector endingBelow = lanes::all(NO_SCORE);
    for (std::size_t v = 0; v < query_.vectors(); ++v) {
        const Vector best = state.best[v];
        const Vector ending = state.ending[v];
        const Vector score = lanes::greater(lanes::shiftUp(best, bestBelow) + earned,
                                            lanes::shiftUp(ending, endingBelow) + CONSECUTIVE);
        state.ending[v] = matched[v] != 0 ? score : lanes::all(NO_SCORE);
        state.best[v] = lanes::greater(best + gaps_[v], state.ending[v]);
        bestBelow = best;
        endingBelow = ending;
    }
}

void UnitScorer::computeStarts(const State &state, std::size_t position, Starts &starts) const
{
    starts[0] = {static_cast<int>(position) * LEADING, NO_SCORE};
    for (std::size_t i = 1; i <= query_.rows(); ++i)
        starts[i] = {ShortQuery::at(state.best, i - 1),
                     ShortQuery::at(state.ending, i - 1) + CONSECUTIVE};
}

int UnitScorer::bonusInside(const Row &row, BytePairSet pairsBelow, ByteClassSet below)
{
    if ((row.startsWord & pairsBelow) == 0)
        return 0;
    return (below & classesOf(ShortQuery::WORD_SEPARATORS)) != 0 ? WORD : CAPITAL;
}

Bounds UnitScorer::bounds(const Starts &starts, const PathTree::Node &node,
                          ByteClassSet below) const
{
    const bool hasSlashBelow = (below & classesOf('/')) != 0;
    // Each byte of the name that stays unmatched costs at least one unit.
    int gaps = node.nameLength;
    int best = starts[query_.rows()].apart - gaps;
    int earnedBehind = 0;
    for (std::size_t i = query_.rows(); i-- > 0 && (query_.row(i).needed & ~below) == 0;) {
        const Row &row = query_.row(i);
        const bool mayFollow = (row.behindPrevious & node.pairsBelow) != 0;
        const int inside = bonusInside(row, node.pairsBelow, below);
        const int atSlash = (row.behindSlash & node.pairsBelow) != 0 ? SLASH : inside;
        int start = starts[i].apart + atSlash;
        if (mayFollow)
            start = std::max(start, starts[i].consecutive);
        gaps -= gaps > 0 ? 1 : 0;
        best = std::max(best, start + earnedBehind - gaps);
        // Only the first byte of the name itself is behind a slash.
        const int apart = hasSlashBelow ? atSlash : inside;
        earnedBehind += mayFollow ? CONSECUTIVE : apart;
    }
    return {.text = best, .below = best};
}

int UnitScorer::rankToReach(const Hit &hit)
{
    // A double that sums up 1024 weights is off by less than this part of a unit.
    constexpr double ROUNDING = 1e-6;
    const double least = std::ceil(hit.score * UNITS_PER_POINT - ROUNDING);
    constexpr int MOST = std::numeric_limits<int>::max();
    constexpr int LEAST = std::numeric_limits<int>::min();
    return least >= MOST ? MOST : least <= LEAST ? LEAST : static_cast<int>(least);
}

} // namespace quillon
