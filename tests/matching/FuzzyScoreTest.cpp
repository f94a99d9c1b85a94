#include "matching/FuzzyScore.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ostream>
#include <string>

namespace quillon {
namespace {

using namespace scoring;

struct SubsequenceRow
{
    const char *query;
    const char *text;
    bool accepted;
    friend std::ostream &operator<<(std::ostream &out, const SubsequenceRow &row)
    {
        return out << '"' << row.query << "\" in \"" << row.text << '"';
    }
};

class Subsequence : public testing::TestWithParam<SubsequenceRow>
{};

TEST_P(Subsequence, isFoundWithCapitalsNarrowing)
{
    EXPECT_EQ(isSubsequence(GetParam().query, GetParam().text), GetParam().accepted);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Subsequence,
    testing::Values(SubsequenceRow{"", "", true}, SubsequenceRow{"", "/a", true},
                    SubsequenceRow{"a", "", false}, SubsequenceRow{"a", "/users/A", true},
                    SubsequenceRow{"A", "/users/a", false}, SubsequenceRow{"ba", "ab", false},
                    SubsequenceRow{"aa", "a", false},
                    SubsequenceRow{"\xc3\xa4", "x\xc3/\xa4", true},
                    SubsequenceRow{"\xc3\xa4", "\xc3\x84", false}));

struct ScoreRow
{
    const char *name;
    std::string query;
    std::string text;
    double score;
    friend std::ostream &operator<<(std::ostream &out, const ScoreRow &row)
    {
        return out << row.name;
    }
};

class Score : public testing::TestWithParam<ScoreRow>
{};

TEST_P(Score, followsTheRule)
{
    const double score = fuzzyScore(GetParam().query, GetParam().text);
    if (std::isinf(GetParam().score))
        EXPECT_EQ(score, GetParam().score);
    else
        EXPECT_NEAR(score, GetParam().score, 1e-9);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Score,
    testing::Values(
        ScoreRow{"emptyQuery", "", "a", SCORE_MIN},
        ScoreRow{"emptyQueryAndText", "", "", SCORE_MIN},
        ScoreRow{"equallyLong", "abc", "abc", SCORE_MAX},
        ScoreRow{"queryLonger", "abc", "ab", SCORE_MIN},
        ScoreRow{"longestScoredText", "a", "a" + std::string(MAX_LENGTH - 1, 'x'),
                 BONUS_SLASH + GAP_TRAILING *(MAX_LENGTH - 1)},
        ScoreRow{"tooLongText", "a", "a" + std::string(MAX_LENGTH, 'x'), SCORE_MIN},
        ScoreRow{"tooLongTextAndQuery", std::string(1025, 'a'), std::string(1025, 'a'), SCORE_MIN},
        ScoreRow{"atTheVeryStart", "a", "ab", BONUS_SLASH + GAP_TRAILING},
        ScoreRow{"afterSlash", "b", "a/b", 2 * GAP_LEADING + BONUS_SLASH},
        ScoreRow{"afterBlank", "b", "a b", 2 * GAP_LEADING + BONUS_WORD},
        ScoreRow{"afterHyphen", "b", "a-b", 2 * GAP_LEADING + BONUS_WORD},
        ScoreRow{"afterUnderscore", "b", "a_b", 2 * GAP_LEADING + BONUS_WORD},
        ScoreRow{"afterDot", "b", "a.b", 2 * GAP_LEADING + BONUS_WORD},
        ScoreRow{"digitAfterDot", "7", "a.7", 2 * GAP_LEADING + BONUS_WORD},
        ScoreRow{"capitalAfterSmall", "b", "aB", GAP_LEADING + BONUS_CAPITAL},
        ScoreRow{"capitalAfterCapital", "b", "AB", GAP_LEADING},
        ScoreRow{"capitalAfterDigit", "b", "1B", GAP_LEADING},
        ScoreRow{"highByteEarnsNothing", "\xa4", "/\xa4", GAP_LEADING},
        ScoreRow{"separatorEarnsNothing", "-", "/-", GAP_LEADING},
        ScoreRow{"consecutive", "ab", "abc", BONUS_SLASH + MATCH_CONSECUTIVE + GAP_TRAILING},
        ScoreRow{"runBeatsBonus", "ab", "a/ab", 2 * GAP_LEADING + BONUS_SLASH + MATCH_CONSECUTIVE},
        ScoreRow{"gapBetween", "ac", "a--c", BONUS_SLASH + 2 * GAP_INNER + BONUS_WORD}));

} // namespace
} // namespace quillon
