#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace quillon {

/// The rule of the order "names first": how well a query matches a path by the beginnings of its
/// names, the folder's own name above all. The own name is what stands behind the last slash. A
/// score is the most that any way to match the query's bytes in order gives, in hundredths. Bytes
/// and letter case are as in fuzzyScore(). Safe from every thread.
namespace namesfirst {

inline constexpr int HUNDREDTHS = 100;
/// A matched byte right behind the matched byte before it continues a run and earns this.
inline constexpr int RUN = 100;
/// A run may pass separators of words. Each of them costs this, and nothing else.
inline constexpr int SEPARATOR_IN_RUN = -10;
/// Every other matched byte starts a run. It earns more at the beginning of a name than at that of
/// a word, so that parent and name come just above two words of one name.
inline constexpr int START_OF_NAME = 60;
inline constexpr int START_OF_WORD = 50;
inline constexpr int START_AT_SLASH = 0;
/// A run that starts inside a word costs this, which keeps matches out of the middle of words.
inline constexpr int START_INSIDE = -50;
/// Each unmatched byte of the own name costs this: the more of a name is typed, the better.
inline constexpr int GAP_IN_NAME = -1;
/// Each unmatched slash between two matched bytes costs this: nearer relatives come first.
inline constexpr int LEVEL_BETWEEN = -10;
/// Each slash behind the last matched byte costs this: a folder comes before what is in it.
inline constexpr int LEVEL_BELOW = -50;
/// No score is less.
inline constexpr int LOWEST = -80 * HUNDREDTHS;

constexpr bool isWordSeparator(char byte)
{
    return byte == ' ' || byte == '-' || byte == '_' || byte == '.';
}

/// Returns what a match earns that starts a run. The first byte of a text counts as following "/".
int start(char byte, char previous);

/// Carries the best ways to match a query over a text, byte by byte. Texts with a common beginning
/// share the state behind it. It is a value of two numbers for each query byte.
class State
{
public:
    /// Says what the best way does with the last byte, where it matches a query byte so far.
    enum Step : std::uint8_t
    {
        isPassed = 0,
        isMatched = 1,
        continuesRun = 2,
    };

    State() = default;
    /// Begins the state of the empty text, for a query of so many bytes.
    explicit State(std::size_t queryLength);

    /// Passes a name that others follow, with the slash behind it. Where steps are wanted, one step
    /// for each query byte is appended for each byte of the text.
    void passParent(std::string_view query, std::string_view name,
                    std::vector<Step> *steps = nullptr);
    /// Passes the own name, behind which score() holds; as above.
    void passOwnName(std::string_view query, std::string_view name,
                     std::vector<Step> *steps = nullptr);
    /// Returns the score of a text that ends here, in hundredths.
    int score() const;

private:
    void passByte(std::string_view query, char byte, char previous, int gap, int lead,
                  std::vector<Step> *steps);

    /// For each query byte: the best with that byte matched anywhere so far, and the best with it
    /// matched by the last byte or by one that only separators of words follow.
    std::vector<int> best_;
    std::vector<int> ending_;
};

} // namespace namesfirst

/// Returns the score of a text that isSubsequence() accepts, in whole points: SCORE_MIN for an
/// empty query and for a text of more than scoring::MAX_LENGTH bytes.
double namesFirstScore(std::string_view query, std::string_view text);

/// Returns the places of the bytes that the best way matches, ascending, one for each byte of the
/// query. Of equally good ways the one with the longer runs, and then the later bytes, is taken.
/// Empty where namesFirstScore() is SCORE_MIN or the text does not match.
std::vector<std::size_t> namesFirstMatch(std::string_view query, std::string_view text);

} // namespace quillon
