#include "matching/FuzzyScore.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

using namespace scoring;

enum ByteKind : std::uint8_t
{
    otherByte,
    lowerOrDigit,
    capital,
};

constexpr std::array<ByteKind, 256> makeKinds()
{
    std::array<ByteKind, 256> kinds{};
    for (unsigned char c = '0'; c <= '9'; ++c)
        kinds[c] = lowerOrDigit;
    for (unsigned char c = 'a'; c <= 'z'; ++c)
        kinds[c] = lowerOrDigit;
    for (unsigned char c = 'A'; c <= 'Z'; ++c)
        kinds[c] = capital;
    return kinds;
}

constexpr std::array<ByteKind, 256> KINDS = makeKinds();

/// Places are looked up by the kind of the byte, then by the byte before it.
using PlaceTable = std::array<std::array<Place, 256>, 3>;

constexpr PlaceTable makePlaces()
{
    PlaceTable table{};
    for (const ByteKind kind : {lowerOrDigit, capital}) {
        auto &row = table[kind];
        row[static_cast<unsigned char>('/')] = Place::startOfName;
        for (const char separator : {' ', '-', '_', '.'})
            row[static_cast<unsigned char>(separator)] = Place::startOfWord;
    }
    for (unsigned char c = 'a'; c <= 'z'; ++c)
        table[capital][c] = Place::capitalInWord;
    return table;
}

constexpr PlaceTable PLACE_TABLE = makePlaces();

using Row = std::array<double, MAX_LENGTH>;

} // namespace

Place scoring::placeOf(char byte, char previous)
{
    return PLACE_TABLE[KINDS[static_cast<unsigned char>(byte)]]
                      [static_cast<unsigned char>(previous)];
}

bool isSubsequence(std::string_view query, std::string_view text)
{
    std::size_t matched = 0;
    for (std::size_t i = 0; i < text.size() && matched < query.size(); ++i)
        matched += matchesByte(query[matched], text[i]) ? 1U : 0U;
    return matched == query.size();
}

double fuzzyScore(std::string_view query, std::string_view text)
{
    const std::size_t n = query.size();
    const std::size_t m = text.size();
    if (n == 0 || m > MAX_LENGTH || n > m)
        return SCORE_MIN;
    if (n == m)
        return SCORE_MAX;

    Row bonuses;
    std::array<char, MAX_LENGTH> lowered;
    for (std::size_t j = 0; j < m; ++j) {
        bonuses[j] = bonus(text[j], j == 0 ? '/' : text[j - 1]);
        lowered[j] = lower(text[j]);
    }

    // ending[j] is the best score with the query byte matched at j, best[j] at j or before.
    Row rows[4];
    Row *ending = &rows[0];
    Row *best = &rows[1];
    Row *endingAbove = &rows[2];
    Row *bestAbove = &rows[3];
    for (std::size_t i = 0; i < n; ++i) {
        const char wanted = lower(query[i]);
        const double gap = i == n - 1 ? GAP_TRAILING : GAP_INNER;
        double previous = SCORE_MIN;
        for (std::size_t j = 0; j < m; ++j) {
            double score = SCORE_MIN;
            if (lowered[j] == wanted && i == 0)
                score = static_cast<double>(j) * GAP_LEADING + bonuses[j];
            else if (lowered[j] == wanted && j > 0)
                score = std::max((*bestAbove)[j - 1] + bonuses[j],
                                 (*endingAbove)[j - 1] + MATCH_CONSECUTIVE);
            previous = std::max(score, previous + gap);
            (*ending)[j] = score;
            (*best)[j] = previous;
        }
        std::swap(ending, endingAbove);
        std::swap(best, bestAbove);
    }
    return (*bestAbove)[m - 1];
}

} // namespace quillon
