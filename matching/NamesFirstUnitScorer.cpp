#include "matching/NamesFirstUnitScorer.h"

#include "matching/FuzzyScore.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillon {

namespace {

using namesfirst::GAP_IN_NAME;
using namesfirst::LOWEST;

/// Stands for minus infinity, and for every score that is less: a score that falls so low does not
/// come up to LOWEST any more, since each query byte adds one point at most.
constexpr std::int16_t NO_WAY = -12'000;
static_assert(NO_WAY + int{NamesFirstUnitScorer::LONGEST_QUERY} * namesfirst::RUN < LOWEST);
/// A way falls below it by what the separators of one run or the bytes of one name cost.
static_assert(NO_WAY + int{scoring::MAX_LENGTH} * namesfirst::SEPARATOR_IN_RUN - 100 >
              std::numeric_limits<std::int16_t>::min());

/// A byte that continues a run past a separator, which the bound has paid for as any byte of a
/// name.
constexpr int RUN_PAST_SEPARATOR = namesfirst::RUN + namesfirst::SEPARATOR_IN_RUN - GAP_IN_NAME;

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

void NamesFirstUnitScorer::extendByName(const State &from, State &to, std::size_t,
                                        std::string_view name) const
{
    std::copy_n(from.best.begin(), query_.vectors(), to.best.begin());
    std::copy_n(from.ending.begin(), query_.vectors(), to.ending.begin());
    extend(to, name, GAP_IN_NAME);
}

void NamesFirstUnitScorer::enterName(const State &from, State &to, std::size_t,
                                     std::string_view name) const
{
    std::copy_n(from.best.begin(), query_.vectors(), to.best.begin());
    std::copy_n(from.ending.begin(), query_.vectors(), to.ending.begin());
    extend(to, name, 0);
    const auto *matched = query_.matchedBy('/');
    lanes::Vector bestBelow = lanes::all(0);
    lanes::Vector endingBelow = lanes::all(NO_WAY);
    for (std::size_t v = 0; v < query_.vectors(); ++v) {
        const lanes::Vector best = to.best[v];
        const lanes::Vector ending = to.ending[v];
        const lanes::Vector score = lanes::greater(
            lanes::shiftUp(best, bestBelow) + std::int16_t{namesfirst::START_AT_SLASH},
            lanes::shiftUp(ending, endingBelow) + std::int16_t{namesfirst::RUN});
        to.ending[v] = matched[v] != 0 ? score : lanes::all(NO_WAY);
        to.best[v] =
            lanes::greater(best + slashGaps_[v], lanes::greater(to.ending[v], lanes::all(NO_WAY)));
        bestBelow = best;
        endingBelow = ending;
    }
}

/// The gap is what an unmatched byte costs. The bytes hold no slash.
void NamesFirstUnitScorer::extend(State &state, std::string_view bytes, std::int16_t gap) const
{
    char previous = '/';
    std::int16_t lead = 0;
    const char *const end = bytes.data() + bytes.size();
    for (const char *at = bytes.data(); at != end;) {
        const char *const begin = at;
        bool areSeparators = true;
        while (at != end && !query_.holds(*at))
            areSeparators &= namesfirst::isWordSeparator(*at++);
        if (const auto passed = static_cast<std::int16_t>(at - begin); passed > 0) {
            const auto separators =
                static_cast<std::int16_t>(passed * namesfirst::SEPARATOR_IN_RUN);
            const auto gaps = static_cast<std::int16_t>(passed * gap);
            for (std::size_t v = 0; v < query_.vectors(); ++v) {
                state.best[v] += gaps;
                state.ending[v] = areSeparators ? state.ending[v] + separators : lanes::all(NO_WAY);
            }
            lead = static_cast<std::int16_t>(lead + gaps);
            previous = at[-1];
        }
        if (at == end)
            return;
        matchByte(state, lead, static_cast<std::int16_t>(namesfirst::start(*at, previous)),
                  namesfirst::isWordSeparator(*at), gap, query_.matchedBy(*at));
        lead = static_cast<std::int16_t>(lead + gap);
        previous = *at++;
    }
}

void NamesFirstUnitScorer::matchByte(State &state, std::int16_t lead, std::int16_t earned,
                                     bool isSeparator, std::int16_t gap,
                                     const lanes::Vector *matched) const
{
    // The first query byte has no row above it.
    lanes::Vector bestBelow = lanes::all(lead);
    lanes::Vector endingBelow = lanes::all(NO_WAY);
    for (std::size_t v = 0; v < query_.vectors(); ++v) {
        const lanes::Vector best = state.best[v];
        const lanes::Vector ending = state.ending[v];
        const lanes::Vector score =
            lanes::greater(lanes::shiftUp(best, bestBelow) + earned,
                           lanes::shiftUp(ending, endingBelow) + std::int16_t{namesfirst::RUN});
        const lanes::Vector reached = matched[v] != 0 ? score : lanes::all(NO_WAY);
        state.best[v] = lanes::greater(best + gap, reached);
        state.ending[v] =
            isSeparator
                ? (matched[v] != 0 ? score : ending + std::int16_t{namesfirst::SEPARATOR_IN_RUN})
                : reached;
        bestBelow = best;
        endingBelow = ending;
    }
}

int NamesFirstUnitScorer::rank(const State &state, const PathTree::Node &node) const
{
    return rankOf(std::max(ShortQuery::at(state.best, query_.rows() - 1), LOWEST), node.textLength);
}

void NamesFirstUnitScorer::computeStarts(const State &state, std::size_t, Starts &starts) const
{
    starts[0] = {0, NO_WAY};
    for (std::size_t i = 1; i <= query_.rows(); ++i)
        starts[i] = {ShortQuery::at(state.best, i - 1), ShortQuery::at(state.ending, i - 1)};
}

int NamesFirstUnitScorer::startInside(const ShortQuery::Row &row, BytePairSet pairsBelow,
                                      ByteClassSet below)
{
    if (row.isSlash)
        return namesfirst::START_AT_SLASH;
    const bool mayFollowSeparator = (row.behindSeparator & pairsBelow) != 0 &&
                                    (below & classesOf(ShortQuery::WORD_SEPARATORS)) != 0;
    if (mayFollowSeparator || (row.isLetter && (below & CAPITAL_CLASSES) != 0))
        return namesfirst::START_OF_WORD;
    return namesfirst::START_INSIDE;
}

int NamesFirstUnitScorer::earnedInRun(const ShortQuery::Row &row, BytePairSet pairsBelow,
                                      ByteClassSet below)
{
    if ((row.behindPrevious & pairsBelow) != 0)
        return namesfirst::RUN;
    const bool mayPassSeparator = (row.behindAnySeparator & pairsBelow) != 0 &&
                                  (row.separatorBehindPrevious & pairsBelow) != 0 &&
                                  (below & classesOf(ShortQuery::WORD_SEPARATORS)) != 0;
    return mayPassSeparator ? RUN_PAST_SEPARATOR : NO_WAY;
}

int NamesFirstUnitScorer::bound(const Starts &starts, const PathTree::Node &node,
                                ByteClassSet below) const
{
    // Only the text of a leaf is known to pay for the bytes of the name: for a text below, the name
    // is one of those above.
    const bool isLeaf = node.firstChild == PathTree::NONE;
    const bool hasSlashBelow = (below & classesOf('/')) != 0;
    int gaps = isLeaf ? node.nameLength : 0;
    int best = starts[query_.rows()].apart -
               (isLeaf ? gaps : std::min(int{node.nameLength}, -namesfirst::LEVEL_BELOW));
    int earnedBehind = 0;
    for (std::size_t i = query_.rows(); i-- > 0 && (query_.row(i).needed & ~below) == 0;) {
        const ShortQuery::Row &row = query_.row(i);
        const int inside = startInside(row, node.pairsBelow, below);
        const bool mayFollowSlash = (row.behindSlash & node.pairsBelow) != 0;
        const int atSlash = mayFollowSlash ? namesfirst::START_OF_NAME : inside;
        // Only the first byte of the name itself is behind a slash.
        const int apart = hasSlashBelow ? atSlash : inside;
        const int inRun = earnedInRun(row, node.pairsBelow, below);
        const int start = std::max(starts[i].apart + atSlash, starts[i].beforeRun + inRun);
        gaps -= gaps > 0 ? 1 : 0;
        best = std::max(best, start + earnedBehind - gaps);
        earnedBehind += std::max(inRun, apart);
    }
    return rankOf(std::max(best, LOWEST), node.textLength);
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
