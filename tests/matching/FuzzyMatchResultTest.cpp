#include "matching/FuzzyMatchResult.h"

#include <gtest/gtest.h>

#include <limits>

namespace quillon {
namespace {

TEST(FuzzyMatchResult, describesItselfOnSeveralLines)
{
    const FuzzyMatchResult result("/a/\"b\"", 1.1, {{3, 2}, {0, 2}});
    EXPECT_EQ(result.description(), "FuzzyMatchResult(\n"
                                    "    text: \"/a/\"b\"\",\n"
                                    "    score: 1.1,\n"
                                    "    highlightRanges: [NSRange(location: 3, length: 2),"
                                    "NSRange(location: 0, length: 2)]\n"
                                    ")");
    EXPECT_EQ(shortestDecimal(0.1 + 0.2), "0.30000000000000004");
    EXPECT_EQ(shortestDecimal(-std::numeric_limits<double>::infinity()), "-inf");
}

TEST(FuzzyMatchResult, equalsWithinATenthOfTheScore)
{
    const FuzzyMatchResult result("/a", 0.0, {{0, 2}});
    EXPECT_EQ(result, FuzzyMatchResult("/a", 0.1, {{0, 2}}));
    EXPECT_EQ(result, FuzzyMatchResult("/a", -0.1, {{0, 2}}));
    EXPECT_NE(result, FuzzyMatchResult("/a", 0.11, {{0, 2}}));
    EXPECT_NE(result, FuzzyMatchResult("/b", 0.0, {{0, 2}}));
    EXPECT_NE(result, FuzzyMatchResult("/a", 0.0, {}));
    const double infinity = std::numeric_limits<double>::infinity();
    EXPECT_EQ(FuzzyMatchResult("/a", infinity, {}), FuzzyMatchResult("/a", infinity, {}));
}

} // namespace
} // namespace quillon
