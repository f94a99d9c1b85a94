#include "matching/FuzzyScore.h"

#include <algorithm>
#include <utility>

namespace quillon {

namespace {

using namespace scoring;

enum ByteKind : std::size_t
{
    otherByte,
    lowerOrDigit,
    capital,
};

constexpr ByteKind kindOf(unsigned char byte)
{
    if ((byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9'))
        return lowerOrDigit;
    return byte >= 'A' && byte <= 'Z' ? capital : otherByte;
}

/// Bonuses are looked up by the kind of the matched byte, then by the byte before it.
using BonusTable = std::array<std::array<double, 256>, 3>;

constexpr BonusTable makeBonusTable()
{
    BonusTable table{};
    for (const ByteKind kind : {lowerOrDigit, capital}) {
        auto &row = table[kind];
        row[static_cast<unsigned char>('/')] = BONUS_SLASH;
        for (const char separator : {' ', '-', '_', '.'})
            row[static_cast<unsigned char>(separator)] = BONUS_WORD;
    }
    for (unsigned char c = 'a'; c <= 'z'; ++c)
        table[capital][c] = BONUS_CAPITAL;
    return table;
}

constexpr BonusTable BONUS_TABLE = makeBonusTable();

using Row = std::array<double, MAX_LENGTH>;

} // namespace

double scoring::bonus(char byte, char previous)
{
    return BONUS_TABLE[kindOf(static_cast<unsigned char>(byte))]
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
