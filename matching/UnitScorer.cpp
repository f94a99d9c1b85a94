#include "matching/UnitScorer.h"

#include "matching/FuzzyScore.h"

#include <algorithm>
#include <array>
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
/// Returns what a match at the place earns.
std::int16_t unitsAt(scoring::Place place)
{
    using enum scoring::Place;
    constexpr std::array<std::int16_t, scoring::PLACES> UNITS{
        units(scoring::bonus(insideWord)), units(scoring::bonus(startOfName)),
        units(scoring::bonus(startOfWord)), units(scoring::bonus(capitalInWord))};
    return UNITS[static_cast<std::size_t>(place)];
}

/// Stands for minus infinity. Real scores stay above LOWEST. A value that is computed from
/// this one stays below them, since at most LONGEST_QUERY consecutive matches are added, and above
/// the least 16-bit number, since at most two units are taken off for each of MAX_LENGTH bytes.
constexpr std::int16_t NO_SCORE = -12'000;
static_assert(NO_SCORE + int{UnitScorer::LONGEST_QUERY} * CONSECUTIVE < UnitScorer::LOWEST);
static_assert(NO_SCORE - 2 * int{scoring::MAX_LENGTH} > std::numeric_limits<std::int16_t>::min());

} // namespace

UnitScorer::UnitScorer(const std::vector<std::string_view> &words) : query_(words)
{
    for (std::size_t v = 0; v < query_.vectors(); ++v)
        gaps_[v] = lanes::select(query_.lastRows()[v], lanes::all(units(scoring::GAP_TRAILING)),
                                 lanes::all(units(scoring::GAP_INNER)));
    std::int16_t most = 0;
    for (std::size_t i = 0; i < query_.rows(); ++i) {
        most = query_.row(i).isFirst ? SLASH : static_cast<std::int16_t>(most + CONSECUTIVE);
        most_[i / lanes::COUNT][i % lanes::COUNT] = most;
    }
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
        const std::int16_t earned = unitsAt(scoring::placeOf(byte, previous));
        const Vector *matched = query_.matchedBy(byte);
        const auto leading = static_cast<std::int16_t>(static_cast<int>(position) * LEADING);
        Vector bestBelow{};
        Vector endingBelow{};
        for (std::size_t v = 0; v < COUNT; ++v) {
            const Vector best = bests[v];
            const Vector ending = endings[v];
            // The first byte of a word has no row above it, so its score is the leading gap and the
            // bonus.
            const Vector isFirst = query_.firstRows()[v];
            const Vector apart =
                lanes::select(isFirst, lanes::all(leading), lanes::shiftUp(best, bestBelow));
            const Vector inRun =
                lanes::select(isFirst, lanes::all(NO_SCORE), lanes::shiftUp(ending, endingBelow));
            const Vector score = lanes::greater(apart + earned, inRun + CONSECUTIVE);
            endings[v] = lanes::select(matched[v], score, lanes::all(NO_SCORE));
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

int UnitScorer::computeGains(std::string_view name, Vector *gains) const
{
    return query_.withVectors(
        [&]<std::size_t COUNT>() { return computeGainVectors<COUNT>(name, gains); });
}

/// Goes through the name from its end to its beginning. Lane i stands for the bytes of the word
/// behind byte i: apart is the most that they earn in the rest of the name, and inRun the most if
/// the first of them is matched by the first byte of the rest, right behind a match. In whole, the
/// lane of a word's first byte stands for all of the word.
template <std::size_t COUNT>
int UnitScorer::computeGainVectors(std::string_view name, Vector *gains) const
{
    std::array<Vector, COUNT> apart;
    std::array<Vector, COUNT> inRun;
    std::array<Vector, COUNT> whole;
    const Vector none = lanes::all(NO_SCORE);
    for (std::size_t v = 0; v < COUNT; ++v) {
        apart[v] = lanes::select(query_.lastRows()[v], Vector{}, none);
        inRun[v] = whole[v] = none;
    }
    for (std::size_t at = name.size(); at > 0;) {
        const std::size_t end = at;
        while (at > 0 && !query_.holds(name[at - 1]))
            --at;
        const auto passed = static_cast<std::int16_t>(end - at);
        if (passed > 0) {
            for (std::size_t v = 0; v < COUNT; ++v) {
                apart[v] += gaps_[v] * passed;
                inRun[v] = none;
                whole[v] += static_cast<std::int16_t>(passed * LEADING);
            }
        }
        if (at == 0)
            break;
        const char byte = name[--at];
        const std::int16_t earned = unitsAt(scoring::placeOf(byte, at > 0 ? name[at - 1] : '/'));
        const Vector *matched = query_.matchedBy(byte);
        for (std::size_t v = 0; v < COUNT; ++v) {
            const bool isHighest = v + 1 == COUNT;
            const Vector most = lanes::greater(apart[v], inRun[v]);
            const Vector rest = lanes::shiftDown(
                most, isHighest ? none : lanes::greater(apart[v + 1], inRun[v + 1]));
            const Vector isNextMatched =
                lanes::shiftDown(matched[v], isHighest ? Vector{} : matched[v + 1]) &
                ~query_.lastRows()[v];
            apart[v] = lanes::greater(apart[v] + gaps_[v],
                                      lanes::select(isNextMatched, rest + earned, none));
            inRun[v] = lanes::select(isNextMatched, rest + CONSECUTIVE, none);
            whole[v] =
                lanes::greater(whole[v] + LEADING, lanes::select(matched[v] & query_.firstRows()[v],
                                                                 most + earned, none));
        }
    }
    std::copy_n(apart.begin(), COUNT, gains);
    std::copy_n(inRun.begin(), COUNT, gains + COUNT);
    std::copy_n(whole.begin(), COUNT, gains + 2 * COUNT);
    ShortQuery::Vectors most;
    for (std::size_t v = 0; v < COUNT; ++v)
        most[v] = lanes::greater(whole[v], most_[v] + lanes::greater(apart[v], inRun[v]));
    return query_.sumOfHighest<COUNT>(most);
}

int UnitScorer::score(const State &state, std::size_t position, const Vector *gains) const
{
    const auto leading = static_cast<std::int16_t>(static_cast<int>(position) * LEADING);
    return query_.withVectors([&]<std::size_t COUNT>() {
        ShortQuery::Vectors scores;
        for (std::size_t v = 0; v < COUNT; ++v)
            scores[v] = lanes::greater(
                gains[2 * COUNT + v] + leading,
                lanes::greater(state.best[v] + gains[v], state.ending[v] + gains[COUNT + v]));
        return query_.sumOfHighest<COUNT>(scores);
    });
}

/// Bounds what the word before the row earns, and moves on to its first row. It is inlined, since a
/// word may be a single letter.
[[gnu::always_inline]] inline int UnitScorer::boundOfWord(const State &state, std::size_t position,
                                                          const Facts &facts, int enough,
                                                          std::size_t &end) const
{
    // Each byte of the name that stays unmatched costs at least one unit.
    int gaps = facts.nameLength;
    int most = ShortQuery::at(state.best, end - 1) - gaps;
    ShortQuery::Earnings behind(facts.levels, SLASH, facts.startOfWord);
    bool isHeld = true;
    for (bool isFirst = false; !isFirst;) {
        const Row &row = query_.row(--end);
        isFirst = row.isFirst;
        isHeld = isHeld && (row.needed & ~facts.below) == 0;
        if (!isHeld)
            continue;
        const bool mayFollow = row.mayFollow(facts.pairs);
        const bool mayStartName = row.mayStartName(facts.pairs);
        const int inside = row.mayStartWord(facts.pairs) ? facts.startOfWord : 0;
        int start =
            (mayStartName ? SLASH : inside) +
            (isFirst ? static_cast<int>(position) * LEADING : ShortQuery::at(state.best, end - 1));
        if (mayFollow)
            start = std::max(start, ShortQuery::at(state.ending, end - 1) + CONSECUTIVE);
        gaps -= gaps > 0 ? 1 : 0;
        most = std::max(most, start + behind.sum() - gaps);
        if (most >= enough && query_.isOneWord()) {
            end = 0;
            return most;
        }
        behind.add(mayFollow ? CONSECUTIVE : inside, mayStartName);
    }
    return most;
}

Bounds UnitScorer::bounds(const State &state, std::size_t position, const PathTree::Node &node,
                          ByteClassSet below, const BytePairSet &pairs, int enough) const
{
    const bool hasSeparator = (below & classesOf(ShortQuery::WORD_SEPARATORS)) != 0;
    const Facts facts{.pairs = pairs,
                      .below = below,
                      .levels = mostLevels(below),
                      .startOfWord = hasSeparator ? WORD : CAPITAL,
                      .nameLength = node.nameLength};
    int sum = 0;
    for (std::size_t end = query_.rows(); end > 0;)
        sum += boundOfWord(state, position, facts, enough, end);
    return {.text = sum, .below = sum};
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
