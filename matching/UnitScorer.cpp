#include "matching/UnitScorer.h"

#include "base/Require.h"
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
constexpr std::string_view WORD_SEPARATORS = " -_.";
/// Stands for minus infinity. Real scores stay above -3 * MAX_LENGTH. A value that is computed from
/// this one stays below them, since at most LONGEST_QUERY consecutive matches are added, and above
/// the least 16-bit number, since at most two units are taken off for each of MAX_LENGTH bytes.
constexpr std::int16_t NO_SCORE = -12'000;
static_assert(NO_SCORE + int{UnitScorer::LONGEST_QUERY} * CONSECUTIVE <
              -3 * int{scoring::MAX_LENGTH});
static_assert(NO_SCORE - 2 * int{scoring::MAX_LENGTH} > std::numeric_limits<std::int16_t>::min());

using Vector = UnitScorer::Vector;

Vector all(std::int16_t value)
{
    return Vector{} + value;
}

Vector greater(Vector a, Vector b)
{
    return a > b ? a : b;
}

/// Gives every lane the value of the lane below it, and the first lane the last one of below.
Vector shiftUp(Vector lanes, Vector below)
{
    return __builtin_shufflevector(below, lanes, 7, 8, 9, 10, 11, 12, 13, 14);
}

} // namespace

UnitScorer::UnitScorer(std::string_view query)
    : rows_(query.size()), vectors_((query.size() + LANES - 1) / LANES), masks_(1)
{
    require(rows_ >= 1 && rows_ <= LONGEST_QUERY, "a query reckoned in units has 1 to 32 bytes");
    for (std::size_t i = 0; i < rows_; ++i) {
        const char wanted = scoring::lower(query[i]);
        std::uint8_t &mask = maskOf_[static_cast<unsigned char>(wanted)];
        if (mask == 0) {
            mask = static_cast<std::uint8_t>(masks_.size());
            masks_.emplace_back();
        }
        masks_[mask][i / LANES][i % LANES] = -1;
        gaps_[i / LANES][i % LANES] =
            units(i == rows_ - 1 ? scoring::GAP_TRAILING : scoring::GAP_INNER);
    }
    for (std::size_t i = rows_; i-- > 0;) {
        const char byte = scoring::lower(query[i]);
        Row &row = queryRows_[i];
        row.needed = classesOf(byte) | (i + 1 < rows_ ? queryRows_[i + 1].needed : 0);
        row.behindPrevious = i > 0 ? pairOf(query[i - 1], byte) : 0;
        // Only letters and digits earn a bonus.
        if (scoring::bonus(byte, '/') > 0) {
            row.behindSlash = pairOf('/', byte);
            for (const char separator : WORD_SEPARATORS)
                row.behindSeparator |= pairOf(separator, byte);
            row.isLetter = byte >= 'a' && byte <= 'z';
        }
    }
    for (unsigned char capital = 'A'; capital <= 'Z'; ++capital)
        maskOf_[capital] = maskOf_[static_cast<unsigned char>(capital - 'A' + 'a')];
}

UnitScorer::State UnitScorer::initialState() const
{
    State state;
    state.best.fill(all(NO_SCORE));
    state.ending.fill(all(NO_SCORE));
    return state;
}

void UnitScorer::extend(const State &from, State &to, std::size_t position, char previous,
                        std::string_view bytes) const
{
    std::copy_n(from.best.begin(), vectors_, to.best.begin());
    std::copy_n(from.ending.begin(), vectors_, to.ending.begin());
    const char *const end = bytes.data() + bytes.size();
    for (const char *at = bytes.data(); at != end;) {
        const char *const begin = at;
        while (at != end && maskOf_[static_cast<unsigned char>(*at)] == 0)
            ++at;
        if (const auto passed = static_cast<std::int16_t>(at - begin); passed > 0) {
            for (std::size_t v = 0; v < vectors_; ++v) {
                to.best[v] += gaps_[v] * passed;
                to.ending[v] = all(NO_SCORE);
            }
            position += static_cast<std::size_t>(passed);
            previous = at[-1];
        }
        if (at == end)
            return;
        const double earned = scoring::bonus(*at, previous);
        matchByte(to, position, units(earned),
                  masks_[maskOf_[static_cast<unsigned char>(*at)]].data());
        previous = *at++;
        ++position;
    }
}

void UnitScorer::matchByte(State &state, std::size_t position, std::int16_t earned,
                           const Vector *matched) const
{
    // The first query byte has no row above it, so its score is the leading gap and the bonus.
    Vector bestBelow = all(static_cast<std::int16_t>(static_cast<int>(position) * LEADING));
    Vector endingBelow = all(NO_SCORE);
    for (std::size_t v = 0; v < vectors_; ++v) {
        const Vector best = state.best[v];
        const Vector ending = state.ending[v];
        const Vector score =
            greater(shiftUp(best, bestBelow) + earned, shiftUp(ending, endingBelow) + CONSECUTIVE);
        state.ending[v] = matched[v] != 0 ? score : all(NO_SCORE);
        state.best[v] = greater(best + gaps_[v], state.ending[v]);
        bestBelow = best;
        endingBelow = ending;
    }
}

int UnitScorer::score(const State &state) const
{
    return state.best[(rows_ - 1) / LANES][(rows_ - 1) % LANES];
}

void UnitScorer::computeStarts(const State &state, std::size_t position, Starts &starts) const
{
    starts[0] = {static_cast<int>(position) * LEADING, NO_SCORE};
    for (std::size_t i = 1; i <= rows_; ++i)
        starts[i] = {state.best[(i - 1) / LANES][(i - 1) % LANES],
                     state.ending[(i - 1) / LANES][(i - 1) % LANES] + CONSECUTIVE};
}

int UnitScorer::bonusInside(const Row &row, BytePairSet pairsBelow, ByteClassSet below)
{
    if ((row.behindSeparator & pairsBelow) != 0 && (below & classesOf(WORD_SEPARATORS)) != 0)
        return WORD;
    return row.isLetter && (below & CAPITAL_CLASSES) != 0 ? CAPITAL : 0;
}

int UnitScorer::bound(const Starts &starts, const PathTree::Node &node, ByteClassSet below) const
{
    const bool hasSlashBelow = (below & classesOf('/')) != 0;
    // Each byte of the name that stays unmatched costs at least one unit.
    int gaps = node.nameLength;
    int best = starts[rows_].apart - gaps;
    int earnedBehind = 0;
    for (std::size_t i = rows_; i-- > 0 && (queryRows_[i].needed & ~below) == 0;) {
        const Row &row = queryRows_[i];
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
    return best;
}

int UnitScorer::unitsToReach(double score)
{
    // A double that sums up 1024 weights is off by less than this part of a unit.
    constexpr double ROUNDING = 1e-6;
    const double least = std::ceil(score * UNITS_PER_POINT - ROUNDING);
    constexpr int MOST = std::numeric_limits<int>::max();
    constexpr int LEAST = std::numeric_limits<int>::min();
    return least >= MOST ? MOST : least <= LEAST ? LEAST : static_cast<int>(least);
}

} // namespace quillon
