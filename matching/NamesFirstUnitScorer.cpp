#include "matching/NamesFirstUnitScorer.h"

#include "matching/FuzzyScore.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillon {

namespace {

constexpr std::int16_t RUN = namesfirst::RUN;
constexpr std::int16_t SEPARATOR_IN_RUN = namesfirst::SEPARATOR_IN_RUN;
constexpr std::int16_t START_AT_SLASH = namesfirst::START_AT_SLASH;
constexpr std::int16_t GAP_IN_NAME = namesfirst::GAP_IN_NAME;

/// Stands for minus infinity, and for every score that is less: a score that falls so low does not
/// come up to LOWEST any more, since each query byte adds one point at most.
constexpr std::int16_t NO_WAY = -12'000;
static_assert(NO_WAY + int{NamesFirstUnitScorer::LONGEST_QUERY} * RUN < namesfirst::LOWEST);
/// A way falls below it by what the separators of one run or the bytes of one name cost.
static_assert(NO_WAY + int{scoring::MAX_LENGTH} * SEPARATOR_IN_RUN - 100 >
              std::numeric_limits<std::int16_t>::min());

/// A byte that continues a run past a separator, which the bound has paid for as any byte of a
/// name.
constexpr int RUN_PAST_SEPARATOR = RUN + SEPARATOR_IN_RUN - GAP_IN_NAME;

/// The least number above every length that is scored, times two, so that ranks leave room for it.
constexpr int RANKS_PER_HUNDREDTH = 2 * int{scoring::MAX_LENGTH};

constexpr int rankOf(int hundredths, std::size_t length)
{
    return hundredths * RANKS_PER_HUNDREDTH + int{scoring::MAX_LENGTH} - static_cast<int>(length);
}

} // namespace

NamesFirstUnitScorer::NamesFirstUnitScorer(std::string_view query) : query_(query)
{
    slashGaps_.fill(lanes::all(namesfirst::LEVEL_BETWEEN));
    const std::size_t last = query_.rows() - 1;
    slashGaps_[last / lanes::COUNT][last % lanes::COUNT] = namesfirst::LEVEL_BELOW;
}

NamesFirstUnitScorer::State NamesFirstUnitScorer::initialState() const
{
    State state;
    state.best.fill(lanes::all(NO_WAY));
    state.ending.fill(lanes::all(NO_WAY));
    return state;
}

void NamesFirstUnitScorer::enterName(const State &from, State &to, std::size_t,
                                     std::string_view name) const
{
    query_.withVectors([&]<std::size_t COUNT>() { enterVectors<COUNT>(from, to, name); });
}

template <std::size_t COUNT>
void NamesFirstUnitScorer::enterVectors(const State &from, State &to, std::string_view name) const
{
    std::array<lanes::Vector, COUNT> bests;
    std::array<lanes::Vector, COUNT> endings;
    std::copy_n(from.best.begin(), COUNT, bests.begin());
    std::copy_n(from.ending.begin(), COUNT, endings.begin());
    const auto matchByte = [&](char byte, std::int16_t earned, auto gapOf, auto endingOf) {
        const lanes::Vector *matched = query_.matchedBy(byte);
        // The first query byte has no row above it.
        lanes::Vector bestBelow = lanes::all(0);
        lanes::Vector endingBelow = lanes::all(NO_WAY);
        for (std::size_t v = 0; v < COUNT; ++v) {
            const lanes::Vector best = bests[v];
            const lanes::Vector ending = endings[v];
            const lanes::Vector score = lanes::greater(lanes::shiftUp(best, bestBelow) + earned,
                                                       lanes::shiftUp(ending, endingBelow) + RUN);
            const lanes::Vector reached = matched[v] != 0 ? score : lanes::all(NO_WAY);
            bests[v] = lanes::greater(gapOf(v, best), reached);
            endings[v] = matched[v] != 0 ? score : endingOf(ending);
            bestBelow = best;
            endingBelow = ending;
        }
    };
    const auto noGap = [](std::size_t, lanes::Vector best) { return best; };
    const auto endRun = [](lanes::Vector) { return lanes::all(NO_WAY); };
    const auto passSeparator = [](lanes::Vector ending) { return ending + SEPARATOR_IN_RUN; };
    char previous = '/';
    for (std::size_t at = 0; at < name.size();) {
        const std::size_t begin = at;
        bool areSeparators = true;
        while (at < name.size() && !query_.holds(name[at]))
            areSeparators &= namesfirst::isWordSeparator(name[at++]);
        if (at > begin) {
            const auto inRun =
                static_cast<std::int16_t>(static_cast<int>(at - begin) * SEPARATOR_IN_RUN);
            for (lanes::Vector &ending : endings)
                ending = areSeparators ? ending + inRun : lanes::all(NO_WAY);
            previous = name[at - 1];
        }
        if (at < name.size()) {
            const auto earned = static_cast<std::int16_t>(namesfirst::start(name[at], previous));
            if (namesfirst::isWordSeparator(name[at]))
                matchByte(name[at], earned, noGap, passSeparator);
            else
                matchByte(name[at], earned, noGap, endRun);
            previous = name[at++];
        }
    }
    const auto passSlash = [this](std::size_t v, lanes::Vector best) {
        return lanes::greater(best + slashGaps_[v], lanes::all(NO_WAY));
    };
    matchByte('/', START_AT_SLASH, passSlash, endRun);
    std::copy_n(bests.begin(), COUNT, to.best.begin());
    std::copy_n(endings.begin(), COUNT, to.ending.begin());
}

void NamesFirstUnitScorer::computeGains(std::string_view name, lanes::Vector *gains) const
{
    query_.withVectors([&]<std::size_t COUNT>() { computeGainVectors<COUNT>(name, gains); });
}

/// Goes through the name from its end to its beginning. Lane i stands for the bytes of the query
/// behind byte i: apart is the most that they earn in the rest of the name, and inRun the most if
/// the rest continues a run.
template <std::size_t COUNT>
void NamesFirstUnitScorer::computeGainVectors(std::string_view name, lanes::Vector *gains) const
{
    std::array<lanes::Vector, COUNT> apart;
    std::array<lanes::Vector, COUNT> inRun;
    apart.fill(lanes::all(NO_WAY));
    inRun.fill(lanes::all(NO_WAY));
    const std::size_t last = query_.rows() - 1;
    apart[last / lanes::COUNT][last % lanes::COUNT] = 0;
    int whole = NO_WAY;
    for (std::size_t at = name.size(); at > 0;) {
        const std::size_t end = at;
        bool areSeparators = true;
        while (at > 0 && !query_.holds(name[at - 1]))
            areSeparators &= namesfirst::isWordSeparator(name[--at]);
        if (at < end) {
            const auto count = static_cast<int>(end - at);
            const auto gaps = static_cast<std::int16_t>(count * GAP_IN_NAME);
            const auto passed = static_cast<std::int16_t>(count * SEPARATOR_IN_RUN);
            for (std::size_t v = 0; v < COUNT; ++v) {
                apart[v] += gaps;
                inRun[v] = areSeparators ? lanes::greater(inRun[v] + passed, lanes::all(NO_WAY))
                                         : lanes::all(NO_WAY);
            }
            whole += gaps;
        }
        if (at == 0)
            break;
        const char byte = name[--at];
        const bool isSeparator = namesfirst::isWordSeparator(byte);
        const auto earned =
            static_cast<std::int16_t>(namesfirst::start(byte, at > 0 ? name[at - 1] : '/'));
        const lanes::Vector *matched = query_.matchedBy(byte);
        whole += GAP_IN_NAME;
        if (matched[0][0] != 0)
            whole = std::max(whole, std::max(apart[0][0], inRun[0][0]) + earned);
        for (std::size_t v = 0; v < COUNT; ++v) {
            const bool isLast = v + 1 == COUNT;
            const lanes::Vector above = isLast ? lanes::all(NO_WAY)
                                               : lanes::greater(apart[v + 1], inRun[v + 1]);
            const lanes::Vector rest =
                lanes::shiftDown(lanes::greater(apart[v], inRun[v]), above);
            const lanes::Vector isMatched =
                lanes::shiftDown(matched[v], isLast ? lanes::Vector{} : matched[v + 1]);
            // A separator that matches the query byte before is not passed but matched.
            const lanes::Vector passed =
                isSeparator ? (matched[v] != 0 ? lanes::all(NO_WAY) : inRun[v] + SEPARATOR_IN_RUN)
                            : lanes::all(NO_WAY);
            apart[v] = lanes::greater(apart[v] + GAP_IN_NAME,
                                      isMatched != 0 ? rest + earned : lanes::all(NO_WAY));
            inRun[v] = lanes::greater(isMatched != 0 ? rest + RUN : lanes::all(NO_WAY),
                                      lanes::greater(passed, lanes::all(NO_WAY)));
        }
    }
    std::copy_n(apart.begin(), COUNT, gains);
    std::copy_n(inRun.begin(), COUNT, gains + COUNT);
    gains[2 * COUNT] = lanes::all(static_cast<std::int16_t>(std::max<int>(whole, NO_WAY)));
}

int NamesFirstUnitScorer::score(const State &state, std::size_t, const lanes::Vector *gains) const
{
    return query_.withVectors([&]<std::size_t COUNT>() {
        lanes::Vector best = gains[2 * COUNT];
        for (std::size_t v = 0; v < COUNT; ++v)
            best = lanes::greater(best, lanes::greater(state.best[v] + gains[v],
                                                       state.ending[v] + gains[COUNT + v]));
        return std::max(lanes::highest(best), namesfirst::LOWEST);
    });
}

int NamesFirstUnitScorer::rank(int score, const PathTree::Node &node)
{
    return rankOf(score, node.textLength);
}

Bounds NamesFirstUnitScorer::ranks(Bounds scores, const PathTree::Node &node, ByteClassSet below)
{
    const std::size_t length = node.textLength;
    const auto leastName = static_cast<std::size_t>(leastNameLength(below));
    return {.text = rankOf(scores.text, length),
            .below = rankOf(scores.below, length + 1 + leastName)};
}

Bounds NamesFirstUnitScorer::bounds(const State &state, std::size_t, const PathTree::Node &node,
                                    ByteClassSet below) const
{
    using namesfirst::LEVEL_BELOW;
    using namesfirst::LEVEL_BETWEEN;
    using namesfirst::START_INSIDE;
    using namesfirst::START_OF_NAME;
    using namesfirst::START_OF_WORD;
    const BytePairSet pairs = node.pairsBelow;
    const bool hasSlashBelow = (below & classesOf('/')) != 0;
    const bool hasSeparator = (below & classesOf(ShortQuery::WORD_SEPARATORS)) != 0;
    // A text pays for the bytes of its own name that stay unmatched. For a text below, this node's
    // name is free, and its own is at least as long as the shortest there.
    int gaps = node.nameLength;
    int gapsBelow = leastNameLength(below);
    const std::size_t rows = query_.rows();
    const int matched = ShortQuery::at(state.best, rows - 1);
    int best = matched - gaps;
    int bestBelow = matched + LEVEL_BELOW - gapsBelow;
    int earnedBehind = 0;
    for (std::size_t i = rows; i-- > 0 && (query_.row(i).needed & ~below) == 0;) {
        const ShortQuery::Row &row = query_.row(i);
        const bool mayPassSeparator = hasSeparator && (row.behindAnySeparator & pairs) != 0;
        const bool mayStartWord = (row.startsWord & pairs) != 0;
        const int elsewhere = row.isSlash ? START_AT_SLASH : START_INSIDE;
        const int inside = mayStartWord ? START_OF_WORD : elsewhere;
        const int atSlash = (row.behindSlash & pairs) != 0 ? START_OF_NAME : inside;
        int inRun = NO_WAY;
        if ((row.behindPrevious & pairs) != 0)
            inRun = RUN;
        else if (mayPassSeparator && (row.separatorBehindPrevious & pairs) != 0)
            inRun = RUN_PAST_SEPARATOR;
        int start = atSlash;
        if (i > 0)
            start = std::max(ShortQuery::at(state.best, i - 1) + atSlash,
                             ShortQuery::at(state.ending, i - 1) + inRun);
        const int earned = start + earnedBehind;
        gaps -= gaps > 0 ? 1 : 0;
        gapsBelow -= gapsBelow > 0 ? 1 : 0;
        best = std::max(best, earned - gaps);
        // The slash behind this node's name is matched, or it is one between two matched bytes, or
        // nothing is matched before it.
        const int level = i > 0 && !row.isSlashBehind ? LEVEL_BETWEEN : 0;
        bestBelow = std::max(bestBelow, earned + level - gapsBelow);
        // Only the first byte of the name itself is behind a slash.
        earnedBehind += std::max(inRun, hasSlashBelow ? atSlash : inside);
    }
    return {.text = std::max(best, namesfirst::LOWEST),
            .below = std::max(bestBelow, namesfirst::LOWEST)};
}

int NamesFirstUnitScorer::rankToReach(const Hit &hit)
{
    // A share of uses makes a score that is no whole number of hundredths.
    constexpr double ROUNDING = 1e-6;
    constexpr double MOST = 1e6;
    if (hit.score == scoring::SCORE_MIN)
        return std::numeric_limits<int>::min();
    const double least = std::min(std::ceil(hit.score * namesfirst::HUNDREDTHS - ROUNDING), MOST);
    const bool isWhole = least / namesfirst::HUNDREDTHS == hit.score;
    return rankOf(static_cast<int>(least), isWhole ? hit.length : scoring::MAX_LENGTH);
}

} // namespace quillon
