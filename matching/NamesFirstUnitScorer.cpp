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
    state.below.best.fill(lanes::all(NO_WAY));
    state.below.ending.fill(lanes::all(NO_WAY));
    return state;
}

void NamesFirstUnitScorer::copy(const Ways &from, Ways &to) const
{
    std::copy_n(from.best.begin(), query_.vectors(), to.best.begin());
    std::copy_n(from.ending.begin(), query_.vectors(), to.ending.begin());
}

void NamesFirstUnitScorer::extendByName(const State &from, State &to, std::size_t,
                                        std::string_view name, bool continues) const
{
    copy(from.below, to.text);
    if (continues)
        copy(from.below, to.below);
    extend(to, name, true, continues);
}

void NamesFirstUnitScorer::enterName(const State &from, State &to, std::size_t position,
                                     std::string_view name) const
{
    copy(from.below, to.below);
    extend(to, name, false, true);
    enterText(to, position, name);
}

void NamesFirstUnitScorer::enterText(State &state, std::size_t, std::string_view) const
{
    Ways &ways = state.below;
    const lanes::Vector *matched = query_.matchedBy('/');
    lanes::Vector bestBelow = lanes::all(0);
    lanes::Vector endingBelow = lanes::all(NO_WAY);
    for (std::size_t v = 0; v < query_.vectors(); ++v) {
        const lanes::Vector best = ways.best[v];
        const lanes::Vector ending = ways.ending[v];
        const lanes::Vector score = lanes::greater(lanes::shiftUp(best, bestBelow) + START_AT_SLASH,
                                                   lanes::shiftUp(ending, endingBelow) + RUN);
        ways.ending[v] = matched[v] != 0 ? score : lanes::all(NO_WAY);
        ways.best[v] = lanes::greater(best + slashGaps_[v],
                                      lanes::greater(ways.ending[v], lanes::all(NO_WAY)));
        bestBelow = best;
        endingBelow = ending;
    }
}

/// Passes a name for the text itself, for the texts below, or for both.
void NamesFirstUnitScorer::extend(State &state, std::string_view name, bool isText,
                                  bool isBelow) const
{
    char previous = '/';
    std::int16_t lead = 0;
    const char *const end = name.data() + name.size();
    for (const char *at = name.data(); at != end;) {
        const char *const begin = at;
        bool areSeparators = true;
        while (at != end && !query_.holds(*at))
            areSeparators &= namesfirst::isWordSeparator(*at++);
        if (const auto passed = static_cast<std::int16_t>(at - begin); passed > 0) {
            const auto gaps = static_cast<std::int16_t>(passed * GAP_IN_NAME);
            const auto inRun = static_cast<std::int16_t>(passed * SEPARATOR_IN_RUN);
            if (isText)
                passUnmatched(state.text, gaps, areSeparators, inRun);
            if (isBelow)
                passUnmatched(state.below, 0, areSeparators, inRun);
            lead = static_cast<std::int16_t>(lead + gaps);
            previous = at[-1];
        }
        if (at == end)
            return;
        const lanes::Vector *matched = query_.matchedBy(*at);
        const auto earned = static_cast<std::int16_t>(namesfirst::start(*at, previous));
        const bool isSeparator = namesfirst::isWordSeparator(*at);
        if (isText)
            matchByte(state.text, lead, earned, isSeparator, GAP_IN_NAME, matched);
        if (isBelow)
            matchByte(state.below, 0, earned, isSeparator, 0, matched);
        lead = static_cast<std::int16_t>(lead + GAP_IN_NAME);
        previous = *at++;
    }
}

void NamesFirstUnitScorer::passUnmatched(Ways &ways, std::int16_t gaps, bool areSeparators,
                                         std::int16_t inRun) const
{
    for (std::size_t v = 0; v < query_.vectors(); ++v) {
        ways.best[v] += gaps;
        ways.ending[v] = areSeparators ? ways.ending[v] + inRun : lanes::all(NO_WAY);
    }
}

void NamesFirstUnitScorer::matchByte(Ways &ways, std::int16_t lead, std::int16_t earned,
                                     bool isSeparator, std::int16_t gap,
                                     const lanes::Vector *matched) const
{
    // The first query byte has no row above it.
    lanes::Vector bestBelow = lanes::all(lead);
    lanes::Vector endingBelow = lanes::all(NO_WAY);
    for (std::size_t v = 0; v < query_.vectors(); ++v) {
        const lanes::Vector best = ways.best[v];
        const lanes::Vector ending = ways.ending[v];
        const lanes::Vector score = lanes::greater(lanes::shiftUp(best, bestBelow) + earned,
                                                   lanes::shiftUp(ending, endingBelow) + RUN);
        const lanes::Vector reached = matched[v] != 0 ? score : lanes::all(NO_WAY);
        ways.best[v] = lanes::greater(best + gap, reached);
        ways.ending[v] = reached;
        if (isSeparator)
            ways.ending[v] = matched[v] != 0 ? score : ending + SEPARATOR_IN_RUN;
        bestBelow = best;
        endingBelow = ending;
    }
}

int NamesFirstUnitScorer::score(const State &state) const
{
    return std::max(ShortQuery::at(state.text.best, query_.rows() - 1), namesfirst::LOWEST);
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

void NamesFirstUnitScorer::computeStarts(const State &state, std::size_t, Starts &starts) const
{
    starts[0] = {0, NO_WAY};
    for (std::size_t i = 1; i <= query_.rows(); ++i)
        starts[i] = {ShortQuery::at(state.below.best, i - 1),
                     ShortQuery::at(state.below.ending, i - 1)};
}

Bounds NamesFirstUnitScorer::bounds(const Starts &starts, const PathTree::Node &node,
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
    int best = starts[rows].apart - gaps;
    int bestBelow = starts[rows].apart + LEVEL_BELOW - gapsBelow;
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
        const int earned =
            std::max(starts[i].apart + atSlash, starts[i].beforeRun + inRun) + earnedBehind;
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
