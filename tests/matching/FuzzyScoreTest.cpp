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

/// The numbers are calculated by hand from the weights and are written as numbers on purpose, so
/// that a changed weight fails its rows.
INSTANTIATE_TEST_SUITE_P(
    Rows, Score,
    testing::Values(
        ScoreRow{"emptyQuery", "", "a", SCORE_MIN},
        ScoreRow{"emptyQueryAndText", "", "", SCORE_MIN},
        ScoreRow{"equallyLong", "abc", "abc", SCORE_MAX},
        ScoreRow{"queryLonger", "abc", "ab", SCORE_MIN},
        ScoreRow{"longestScoredText", "a", "a" + std::string(1023, 'x'), -4.215},
        ScoreRow{"tooLongText", "a", "a" + std::string(1024, 'x'), SCORE_MIN},
        ScoreRow{"tooLongTextAndQuery", std::string(1025, 'a'), std::string(1025, 'a'), SCORE_MIN},
        ScoreRow{"atTheVeryStart", "a", "ab", 0.895}, ScoreRow{"afterSlash", "b", "a/b", 0.89},
        ScoreRow{"afterBlank", "b", "a b", 0.79}, ScoreRow{"afterHyphen", "b", "a-b", 0.79},
        ScoreRow{"afterUnderscore", "b", "a_b", 0.79}, ScoreRow{"afterDot", "b", "a.b", 0.79},
        ScoreRow{"digitAfterDot", "7", "a.7", 0.79},
        ScoreRow{"capitalAfterSmall", "b", "aB", 0.695},
        ScoreRow{"capitalAfterCapital", "b", "AB", -0.005},
        ScoreRow{"capitalAfterDigit", "b", "1B", -0.005},
        ScoreRow{"insideAWord", "b", "aXb", -0.01},
        ScoreRow{"highByteEarnsNothing", "\xa4", "/\xa4", -0.005},
        ScoreRow{"separatorEarnsNothing", "-", "/-", -0.005},
        ScoreRow{"consecutive", "ab", "abc", 1.895}, ScoreRow{"runBeatsBonus", "ab", "a/ab", 1.89},
        ScoreRow{"gapBetween", "ac", "a--c", 1.68},
        // -0.005 before, 0.9 for a, 1 for b, -0.01 for c, nothing for d, 1 for e
        ScoreRow{"gapInARun", "abde", "/abcde", 2.885},
        // -0.04 before, 0.9 for D, 1 each for o and c, -0.03 after
        ScoreRow{"beginningOfAComponent", "doc", "/home/u/Documents", 2.83},
        // -0.09 before, 0.9 for d, 1 each for o, c and s
        ScoreRow{"lastComponentWins", "docs", "/home/u/Documents/docs", 3.81},
        // -0.015 before, 0.9 for q, -0.1 between, 0.8 for b, -0.01 after
        ScoreRow{"wordsOfAName", "qb", "/x/quill on-b.c", 1.595},
        // -0.015 before, 0.9 for C, -0.04 between, 0.7 for S, -0.01 after
        ScoreRow{"capitalsOfAName", "cs", "/u/CamelSet", 1.535}));

} // namespace
} // namespace quillon
