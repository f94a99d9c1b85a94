#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <string_view>

namespace quillon {

/// The rule that every ranking follows. It says how well a query matches one text, by bytes and
/// with ASCII case. Safe from every thread. Nothing is allocated.
namespace scoring {

/// Longer texts are not scored.
static constexpr std::size_t MAX_LENGTH = 1024;

/// Each byte of the text before the first match costs this little, since the beginning of a path
/// says little.
static constexpr double GAP_LEADING = -0.005;
/// Each byte that is skipped between matches costs this, since compact matches are better.
static constexpr double GAP_INNER = -0.01;
/// Each byte after the last match costs this.
static constexpr double GAP_TRAILING = -0.005;
/// A match right after the one before earns more than every bonus, so that runs win.
static constexpr double MATCH_CONSECUTIVE = 1.0;
/// A match at the beginning of a path component earns this.
static constexpr double BONUS_SLASH = 0.9;
/// A match at the beginning of a word, after a blank, "-", "_" or ".", earns this.
static constexpr double BONUS_WORD = 0.8;
/// A match of a capital after a lower-case letter earns this.
static constexpr double BONUS_CAPITAL = 0.7;
static constexpr double SCORE_MIN = -std::numeric_limits<double>::infinity();
static constexpr double SCORE_MAX = std::numeric_limits<double>::infinity();

constexpr char lower(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? static_cast<char>(byte - 'A' + 'a') : byte;
}

/// Says where in a text a letter or a digit stands. Every other byte is inside a word.
enum class Place : std::uint8_t
{
    insideWord,
    startOfName,
    startOfWord,
    capitalInWord,
};
inline constexpr std::size_t PLACES = 4;

/// Returns the place of a byte because of the byte before it. The first byte of a text counts as
/// following "/".
Place placeOf(char byte, char previous);

/// Returns what a match of a byte at the place earns.
constexpr double bonus(Place place)
{
    constexpr std::array<double, PLACES> BONUSES{0, BONUS_SLASH, BONUS_WORD, BONUS_CAPITAL};
    return BONUSES[static_cast<std::size_t>(place)];
}
inline double bonus(char byte, char previous)
{
    return bonus(placeOf(byte, previous));
}

/// Returns true when a byte of a text is the query's byte, or its capital.
constexpr bool matchesByte(char query, char text)
{
    return text == query ||
           (query >= 'a' && query <= 'z' && text == static_cast<char>(query - 'a' + 'A'));
}

} // namespace scoring

/// Returns true when the query's bytes occur in the text in order. The empty query occurs in every
/// text.
bool isSubsequence(std::string_view query, std::string_view text);

/// Returns the score of a text that isSubsequence() accepts. The score is SCORE_MAX when both are
/// equally long, and SCORE_MIN for an empty query and for a text of more than MAX_LENGTH bytes.
double fuzzyScore(std::string_view query, std::string_view text);

} // namespace quillon
