#pragma once

#include <array>
#include <cstddef>
#include <limits>
#include <string_view>

namespace quillon {

/// How well a query matches one text: the rule that every ranking follows, on bytes, with ASCII
/// case. Safe from every thread; nothing is allocated.
namespace scoring {

/// Longer texts are not scored.
static constexpr std::size_t MAX_LENGTH = 1024;

/// For each byte of the text before the first match: what stands far left matters little.
static constexpr double GAP_LEADING = -0.005;
/// For each byte skipped between matches: spread out matches are worse than compact ones.
static constexpr double GAP_INNER = -0.01;
/// For each byte after the last match.
static constexpr double GAP_TRAILING = -0.005;
/// For a match right after the one before; above every bonus, so that runs win.
static constexpr double MATCH_CONSECUTIVE = 1.0;
/// At the beginning of a path component.
static constexpr double BONUS_SLASH = 0.9;
/// At the beginning of a word: after a blank, "-", "_" or ".".
static constexpr double BONUS_WORD = 0.8;
/// At a capital after a lower-case letter.
static constexpr double BONUS_CAPITAL = 0.7;
static constexpr double SCORE_MIN = -std::numeric_limits<double>::infinity();
static constexpr double SCORE_MAX = std::numeric_limits<double>::infinity();

constexpr char lower(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

/// What a match on a byte earns for the byte before it; the first byte of a text follows "/".
double bonus(char byte, char previous);

/// Whether a byte of a text serves as a byte of a query: itself, or its capital.
constexpr bool matchesByte(char query, char text)
{
    return text == query ||
           (query >= 'a' && query <= 'z' && text == static_cast<char>(query - 'a' + 'A'));
}

} // namespace scoring

/// Whether the query's bytes occur in the text in order. The empty query always does.
bool isSubsequence(std::string_view query, std::string_view text);

/// The score of a text that isSubsequence() accepts: SCORE_MAX where both are equally long,
/// SCORE_MIN for an empty query and for a text of more than MAX_LENGTH bytes.
double fuzzyScore(std::string_view query, std::string_view text);

} // namespace quillon
