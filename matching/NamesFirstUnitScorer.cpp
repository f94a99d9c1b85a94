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

NamesFirstUnitScorer::NamesFirstUnitScorer(const std::vector<std::string_view> &words)
    : query_(words)
{
    for (std::size_t v = 0; v < query_.vectors(); ++v)
        slashGaps_[v] = lanes::select(query_.lastRows()[v], lanes::all(namesfirst::LEVEL_BELOW),
                                      lanes::all(namesfirst::LEVEL_BETWEEN));
    int most = 0;
    for (std::size_t i = 0; i < query_.rows(); ++i) {
        const ShortQuery::Row &row = query_.row(i);
        most = row.isFirst ? namesfirst::START_OF_NAME : most + RUN;
        const int passed = ShortQuery::at(slashGaps_, i);
        most_[i / lanes::COUNT][i % lanes::COUNT] =
            static_cast<std::int16_t>(most + (row.isSlash ? 0 : passed));
    }
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
    const lanes::Vector none = lanes::all(NO_WAY);
    const auto matchByte = [&](char byte, std::int16_t earned, auto gapOf, auto endingOf) {
        const lanes::Vector *matched = query_.matchedBy(byte);
        lanes::Vector bestBelow{};
        lanes::Vector endingBelow{};
        for (std::size_t v = 0; v < COUNT; ++v) {
            const lanes::Vector best = bests[v];
            const lanes::Vector ending = endings[v];
            // The first byte of a word has no row above it.
            const lanes::Vector isFirst = query_.firstRows()[v];
            const lanes::Vector apart =
                lanes::select(isFirst, lanes::Vector{}, lanes::shiftUp(best, bestBelow));
            const lanes::Vector inRun =
                lanes::select(isFirst, none, lanes::shiftUp(ending, endingBelow));
            const lanes::Vector score = lanes::greater(apart + earned, inRun + RUN);
            bests[v] = lanes::greater(gapOf(v, best), lanes::select(matched[v], score, none));
            endings[v] = lanes::select(matched[v], score, endingOf(ending));
            bestBelow = best;
            endingBelow = ending;
        }
    };
    const auto noGap = [](std::size_t, lanes::Vector best) { return best; };
    const auto endRun = [none](lanes::Vector) { return none; };
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
                ending = areSeparators ? ending + inRun : none;
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

int NamesFirstUnitScorer::computeGains(std::string_view name, lanes::Vector *gains) const
{
    return query_.withVectors(
        [&]<std::size_t COUNT>() { return computeGainVectors<COUNT>(name, gains); });
}

/// Goes through the name from its end to its beginning. Lane i stands for the bytes of the word
/// behind byte i: apart is the most that they earn in the rest of the name, and inRun the most if
/// the rest continues a run. In whole, the lane of a word's first byte stands for all of the word.
template <std::size_t COUNT>
int NamesFirstUnitScorer::computeGainVectors(std::string_view name, lanes::Vector *gains) const
{
    std::array<lanes::Vector, COUNT> apart;
    std::array<lanes::Vector, COUNT> inRun;
    std::array<lanes::Vector, COUNT> whole;
    const lanes::Vector none = lanes::all(NO_WAY);
    for (std::size_t v = 0; v < COUNT; ++v) {
        apart[v] = lanes::select(query_.lastRows()[v], lanes::Vector{}, none);
        inRun[v] = whole[v] = none;
    }
    for (std::size_t at = name.size(); at > 0;) {
        const std::size_t end = at;
        bool areSeparators = true;
        while (at > 0 && !query_.holds(name[at - 1]))
            areSeparators &= namesfirst::isWordSeparator(name[--at]);
        if (const auto passed = static_cast<std::int16_t>(end - at); passed > 0) {
            for (std::size_t v = 0; v < COUNT; ++v) {
                apart[v] += static_cast<std::int16_t>(passed * GAP_IN_NAME);
                whole[v] += static_cast<std::int16_t>(passed * GAP_IN_NAME);
                const lanes::Vector run =
                    inRun[v] + static_cast<std::int16_t>(passed * SEPARATOR_IN_RUN);
                inRun[v] = areSeparators ? lanes::greater(run, none) : none;
            }
        }
        if (at == 0)
            break;
        const char byte = name[--at];
        const bool isSeparator = namesfirst::isWordSeparator(byte);
        const auto earned =
            static_cast<std::int16_t>(namesfirst::start(byte, at > 0 ? name[at - 1] : '/'));
        const lanes::Vector *matched = query_.matchedBy(byte);
        for (std::size_t v = 0; v < COUNT; ++v) {
            const bool isHighest = v + 1 == COUNT;
            const lanes::Vector most = lanes::greater(apart[v], inRun[v]);
            const lanes::Vector rest = lanes::shiftDown(
                most, isHighest ? none : lanes::greater(apart[v + 1], inRun[v + 1]));
            const lanes::Vector isNextMatched =
                lanes::shiftDown(matched[v], isHighest ? lanes::Vector{} : matched[v + 1]) &
                ~query_.lastRows()[v];
            // A separator that matches the query byte before it is not passed but matched.
            const lanes::Vector passed =
                isSeparator ? lanes::select(matched[v], none, inRun[v] + SEPARATOR_IN_RUN) : none;
            apart[v] = lanes::greater(apart[v] + GAP_IN_NAME,
                                      lanes::select(isNextMatched, rest + earned, none));
            inRun[v] = lanes::greater(lanes::select(isNextMatched, rest + RUN, none),
                                      lanes::greater(passed, none));
            whole[v] = lanes::greater(
                whole[v] + GAP_IN_NAME,
                lanes::select(matched[v] & query_.firstRows()[v], most + earned, none));
        }
    }
    std::copy_n(apart.begin(), COUNT, gains);
    std::copy_n(inRun.begin(), COUNT, gains + COUNT);
    std::copy_n(whole.begin(), COUNT, gains + 2 * COUNT);
    ShortQuery::Vectors most;
    for (std::size_t v = 0; v < COUNT; ++v)
        most[v] = lanes::greater(lanes::greater(whole[v], lanes::all(namesfirst::LOWEST)),
                                 most_[v] + lanes::greater(apart[v], inRun[v]));
    return query_.sumOfHighest<COUNT>(most);
}

int NamesFirstUnitScorer::score(const State &state, std::size_t, const lanes::Vector *gains) const
{
    return query_.withVectors([&]<std::size_t COUNT>() {
        ShortQuery::Vectors scores;
        for (std::size_t v = 0; v < COUNT; ++v)
            scores[v] = lanes::greater(
                lanes::greater(gains[2 * COUNT + v], lanes::all(namesfirst::LOWEST)),
                lanes::greater(state.best[v] + gains[v], state.ending[v] + gains[COUNT + v]));
        return query_.sumOfHighest<COUNT>(scores);
    });
}

int NamesFirstUnitScorer::rank(int score, const PathTree::Node &node)
{
    return rankOf(score, node.textLength);
}

int NamesFirstUnitScorer::scoreToReach(int rank)
{
    return rank / RANKS_PER_HUNDREDTH + 1;
}

Bounds NamesFirstUnitScorer::ranks(Bounds scores, const PathTree::Node &node, ByteClassSet below)
{
    const std::size_t length = node.textLength;
    const auto leastName = static_cast<std::size_t>(leastNameLength(below));
    return {.text = rankOf(scores.text, length),
            .below = rankOf(scores.below, length + 1 + leastName)};
}

Bounds NamesFirstUnitScorer::bounds(const State &state, std::size_t, const PathTree::Node &node,
                                    ByteClassSet below, const BytePairSet &pairs, int enough) const
{
    const Facts facts{.pairs = pairs,
                      .below = below,
                      .levels = mostLevels(below),
                      .hasSeparator = (below & classesOf(ShortQuery::WORD_SEPARATORS)) != 0,
                      .nameLength = node.nameLength,
                      .leastNameLength = leastNameLength(below)};
    Bounds sum;
    for (std::size_t end = query_.rows(); end > 0;) {
        const Bounds word = boundsOfWord(state, facts, enough, end);
        sum.text += std::max(word.text, namesfirst::LOWEST);
        sum.below += std::max(word.below, namesfirst::LOWEST);
    }
    return sum;
}

/// Bounds what the word before the row earns, and moves on to its first row. It is inlined, since a
/// word may be a single letter.
[[gnu::always_inline]] inline Bounds NamesFirstUnitScorer::boundsOfWord(const State &state,
                                                                        const Facts &facts,
                                                                        int enough,
                                                                        std::size_t &end) const
{
    using namesfirst::LEVEL_BELOW;
    using namesfirst::LEVEL_BETWEEN;
    using namesfirst::START_INSIDE;
    using namesfirst::START_OF_NAME;
    using namesfirst::START_OF_WORD;
    const BytePairSet &pairs = facts.pairs;
    // A text pays for the bytes of its own name that stay unmatched. For a text below, this node's
    // name is free, and its own is at least as long as the shortest there.
    int gaps = facts.nameLength;
    int gapsBelow = facts.leastNameLength;
    const int held = ShortQuery::at(state.best, end - 1);
    Bounds most{.text = held - gaps, .below = held + LEVEL_BELOW - gapsBelow};
    ShortQuery::Earnings behind(facts.levels, START_OF_NAME, START_OF_WORD);
    bool isHeld = true;
    for (bool isFirst = false; !isFirst;) {
        const ShortQuery::Row &row = query_.row(--end);
        isFirst = row.isFirst;
        isHeld = isHeld && (row.needed & ~facts.below) == 0;
        if (!isHeld)
            continue;
        const bool mayStartWord = row.mayStartWord(pairs);
        const bool mayStartName = row.mayStartName(pairs);
        const int elsewhere = row.isSlash ? START_AT_SLASH : START_INSIDE;
        const int inside = mayStartWord ? START_OF_WORD : elsewhere;
        int inRun = NO_WAY;
        if (row.mayFollow(pairs))
            inRun = RUN;
        else if (facts.hasSeparator && pairs.hasAny(row.behindAnySeparator) &&
                 pairs.hasAny(row.separatorBehindPrevious))
            inRun = RUN_PAST_SEPARATOR;
        int start = mayStartName ? START_OF_NAME : inside;
        if (!isFirst)
            start = std::max(start + ShortQuery::at(state.best, end - 1),
                             inRun + ShortQuery::at(state.ending, end - 1));
        const int earned = start + behind.sum();
        gaps -= gaps > 0 ? 1 : 0;
        gapsBelow -= gapsBelow > 0 ? 1 : 0;
        most.text = std::max(most.text, earned - gaps);
        // The slash behind this node's name is matched, or it is one between two matched bytes, or
        // nothing is matched before it.
        const int level = !isFirst && !row.isSlashBehind ? LEVEL_BETWEEN : 0;
        most.below = std::max(most.below, earned + level - gapsBelow);
        if (std::min(most.text, most.below) >= enough && query_.isOneWord()) {
            end = 0;
            return most;
        }
        behind.add(std::max(inRun, inside), mayStartName);
    }
    return most;
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
