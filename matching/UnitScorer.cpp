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

void UnitScorer::enterName(const State &from, State &to, std::size_t position,
                           std::string_view name) const
{
    query_.withVectors([&]<std::size_t COUNT>() { enterVectors<COUNT>(from, to, position, name); });
}

template <std::size_t COUNT>
void UnitScorer::enterVectors(const State &from, State &to, std::size_t position,
                              std::string_view name) const
{
    std::array<Vector, COUNT> bests;
    std::array<Vector, COUNT> endings;
    std::copy_n(from.best.begin(), COUNT, bests.begin());
    std::copy_n(from.ending.begin(), COUNT, endings.begin());
    const auto matchByte = [&](char byte, char previous) {
        const std::int16_t earned = units(scoring::bonus(byte, previous));
        const Vector *matched = query_.matchedBy(byte);
        // The first query byte has no row above it, so its score is the leading gap and the bonus.
        Vector bestBelow =
            lanes::all(static_cast<std::int16_t>(static_cast<int>(position) * LEADING));
        Vector endingBelow = lanes::all(NO_SCORE);
        for (std::size_t v = 0; v < COUNT; ++v) {
            const Vector best = bests[v];
            const Vector ending = endings[v];
            const Vector score = lanes::greater(lanes::shiftUp(best, bestBelow) + earned,
                                                lanes::shiftUp(ending, endingBelow) + CONSECUTIVE);
            endings[v] = matched[v] != 0 ? score : lanes::all(NO_SCORE);
            bests[v] = lanes::greater(best + gaps_[v], endings[v]);
            bestBelow = best;
            endingBelow = ending;
        }
        ++position;
    };
    char previous = '/';
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t begin = at;
        while (at < name.size() && !query_.holds(name[at]))
            ++at;
        if (at > begin) {
            for (std::size_t v = 0; v < COUNT; ++v) {
                bests[v] += gaps_[v] * static_cast<std::int16_t>(at - begin);
                endings[v] = lanes::all(NO_SCORE);
            }
            position += at - begin;
            previous = name[at - 1];
        }
        if (at < name.size()) {
            matchByte(name[at], previous);
            previous = name[at++];
        }
    }
    matchByte('/', previous);
    std::copy_n(bests.begin(), COUNT, to.best.begin());
    std::copy_n(endings.begin(), COUNT, to.ending.begin());
}

void UnitScorer::computeGains(std::string_view name, Vector *gains) const
{
    query_.withVectors([&]<std::size_t COUNT>() { computeGainVectors<COUNT>(name, gains); });
}

/// Goes through the name from its end to its beginning. Lane i stands for the bytes of the query
/// behind byte i: apart is the most that they earn in the rest of the name, and inRun the most if
/// the first of them is matched by the first byte of the rest, right behind a match.
template <std::size_t COUNT>
void UnitScorer::computeGainVectors(std::string_view name, Vector *gains) const
{
    std::array<Vector, COUNT> apart;
    std::array<Vector, COUNT> inRun;
    apart.fill(lanes::all(NO_SCORE));
    inRun.fill(lanes::all(NO_SCORE));
    const std::size_t last = query_.rows() - 1;
    apart[last / lanes::COUNT][last % lanes::COUNT] = 0;
    int whole = NO_SCORE;
    for (std::size_t at = name.size(); at > 0;) {
        const std::size_t end = at;
        while (at > 0 && !query_.holds(name[at - 1]))
            --at;
        if (at < end) {
            for (std::size_t v = 0; v < COUNT; ++v) {
                apart[v] += gaps_[v] * static_cast<std::int16_t>(end - at);
                inRun[v] = lanes::all(NO_SCORE);
            }
            whole += static_cast<int>(end - at) * LEADING;
        }
        if (at == 0)
            break;
        const char byte = name[--at];
        const std::int16_t earned = units(scoring::bonus(byte, at > 0 ? name[at - 1] : '/'));
        const Vector *matched = query_.matchedBy(byte);
        whole += LEADING;
        if (matched[0][0] != 0)
            whole = std::max(whole, std::max(apart[0][0], inRun[0][0]) + earned);
        for (std::size_t v = 0; v < COUNT; ++v) {
            const bool isLast = v + 1 == COUNT;
            const Vector above = isLast ? lanes::all(NO_SCORE)
                                        : lanes::greater(apart[v + 1], inRun[v + 1]);
            const Vector rest = lanes::shiftDown(lanes::greater(apart[v], inRun[v]), above);
            const Vector isMatched =
                lanes::shiftDown(matched[v], isLast ? Vector{} : matched[v + 1]);
            apart[v] = lanes::greater(apart[v] + gaps_[v],
                                      isMatched != 0 ? rest + earned : lanes::all(NO_SCORE));
            inRun[v] = isMatched != 0 ? rest + CONSECUTIVE : lanes::all(NO_SCORE);
        }
    }
    std::copy_n(apart.begin(), COUNT, gains);
    std::copy_n(inRun.begin(), COUNT, gains + COUNT);
    gains[2 * COUNT] = lanes::all(static_cast<std::int16_t>(std::max<int>(whole, NO_SCORE)));
}

int UnitScorer::score(const State &state, std::size_t position, const Vector *gains) const
{
    return query_.withVectors([&]<std::size_t COUNT>() {
        Vector best = lanes::all(NO_SCORE);
        for (std::size_t v = 0; v < COUNT; ++v)
            best = lanes::greater(best, lanes::greater(state.best[v] + gains[v],
                                                       state.ending[v] + gains[COUNT + v]));
        const int whole = gains[2 * COUNT][0] + static_cast<int>(position) * LEADING;
        return std::max(lanes::highest(best), whole);
    });
}

int UnitScorer::bonusInside(const Row &row, BytePairSet pairsBelow, ByteClassSet below)
{
    if ((row.startsWord & pairsBelow) == 0)
        return 0;
    return (below & classesOf(ShortQuery::WORD_SEPARATORS)) != 0 ? WORD : CAPITAL;
}

Bounds UnitScorer::bounds(const State &state, std::size_t position, const PathTree::Node &node,
                          ByteClassSet below) const
{
    const unsigned levels = mostLevels(below);
    unsigned slashes = 0;
    unsigned words = 0;
    // Each byte of the name that stays unmatched costs at least one unit.
    int gaps = node.nameLength;
    int best = ShortQuery::at(state.best, query_.rows() - 1) - gaps;
    int earnedBehind = 0;
    for (std::size_t i = query_.rows(); i-- > 0 && (query_.row(i).needed & ~below) == 0;) {
        const Row &row = query_.row(i);
        const bool mayFollow = (row.behindPrevious & node.pairsBelow) != 0;
        const int inside = bonusInside(row, node.pairsBelow, below);
        const int atSlash = (row.behindSlash & node.pairsBelow) != 0 ? SLASH : inside;
        const int before =
            i > 0 ? ShortQuery::at(state.best, i - 1) : static_cast<int>(position) * LEADING;
        int start = before + atSlash;
        if (mayFollow && i > 0)
            start = std::max(start, ShortQuery::at(state.ending, i - 1) + CONSECUTIVE);
        gaps -= gaps > 0 ? 1 : 0;
        best = std::max(best, start + earnedBehind - gaps);
        // Only the first byte of the name itself is behind a slash.
        if (mayFollow) {
            earnedBehind += CONSECUTIVE;
        } else if (atSlash == inside) {
            earnedBehind += inside;
        } else if (slashes < levels) {
            ++slashes;
            words += inside > 0 ? 1U : 0U;
            earnedBehind += atSlash;
        } else if (inside == 0 && words > 0) {
            --words;
            earnedBehind += std::max<int>(WORD, CAPITAL);
        } else {
            earnedBehind += inside;
        }
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
