#include "matching/NamesFirstScore.h"

#include "matching/FuzzyScore.h"
#include "tests/matching/RandomTexts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <ostream>
#include <string>
#include <vector>

namespace quillon {
namespace {

using namespace namesfirst;

int hundredths(const std::string &query, const std::string &text)
{
    return static_cast<int>(std::lround(HUNDREDTHS * namesFirstScore(query, text)));
}

/// What one way to match costs and earns, as the rule says it: the places are those of the matched
/// bytes.
int scoreOf(const std::vector<std::size_t> &places, const std::string &text)
{
    const std::size_t name = text.rfind('/') + 1;
    int score = 0;
    // Unmatched bytes of the own name are paid for unless they separate the words of a run.
    std::vector<bool> isFree(text.size());
    for (std::size_t k = 0; k < places.size(); ++k) {
        const std::size_t at = places[k];
        isFree[at] = true;
        const int apart = start(text[at], at == 0 ? '/' : text[at - 1]);
        const std::size_t behind = k == 0 ? 0 : places[k - 1] + 1;
        const std::string between = k == 0 ? "" : text.substr(behind, at - behind);
        const bool isRun = k > 0 && std::ranges::all_of(between, isWordSeparator);
        const int separators = static_cast<int>(between.size());
        const int inName = static_cast<int>(at - std::min(at, std::max(behind, name)));
        const int inRun = RUN + SEPARATOR_IN_RUN * separators - GAP_IN_NAME * inName;
        score += isRun ? std::max(apart, inRun) : apart;
    }
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (isFree[at])
            continue;
        if (text[at] == '/' && at > places.front())
            score += at > places.back() ? LEVEL_BELOW : LEVEL_BETWEEN;
        score += at >= name ? GAP_IN_NAME : 0;
    }
    return score;
}

/// Tries every way to match.
void tryAll(const std::string &query, const std::string &text, std::vector<std::size_t> &places,
            int &best)
{
    if (places.size() == query.size()) {
        best = std::max(best, scoreOf(places, text));
        return;
    }
    const std::size_t from = places.empty() ? 0 : places.back() + 1;
    for (std::size_t at = from; at < text.size(); ++at) {
        if (scoring::lower(text[at]) != scoring::lower(query[places.size()]))
            continue;
        places.push_back(at);
        tryAll(query, text, places, best);
        places.pop_back();
    }
}

struct NamesFirstRow
{
    const char *query;
    const char *text;
    int hundredths;
    friend std::ostream &operator<<(std::ostream &out, const NamesFirstRow &row)
    {
        return out << '"' << row.query << "\" in \"" << row.text << '"';
    }
};

class NamesFirst : public testing::TestWithParam<NamesFirstRow>
{};

TEST_P(NamesFirst, followsTheRule)
{
    EXPECT_EQ(hundredths(GetParam().query, GetParam().text), GetParam().hundredths);
}

/// The numbers are worked out by hand from the weights and stand here as numbers on purpose: a
/// weight that changes fails its rows.
INSTANTIATE_TEST_SUITE_P(
    Rows, NamesFirst,
    testing::Values(
        NamesFirstRow{"foo", "/x/foo", 260}, NamesFirstRow{"foo", "/x/foobar", 257},
        NamesFirstRow{"foo", "/x/aFoo", 249}, NamesFirstRow{"foo", "/x/my-foo", 247},
        NamesFirstRow{"foo", "/x/foo/bar", 207}, NamesFirstRow{"foo", "/x/f/o/o", 160},
        NamesFirstRow{"foo", "/x/xfoo", 149}, NamesFirstRow{"srcmai", "/w/src-main", 549},
        NamesFirstRow{"srcmai", "/w/src/main", 509},
        NamesFirstRow{"srcmai", "/w/src/app/main", 499},
        NamesFirstRow{"srcmai", "/w/src/main/java", 456},
        NamesFirstRow{"srcmai", "/w/src/domain", 397},
        NamesFirstRow{"srcmai", "/w/source/main", 359}, NamesFirstRow{"myfol", "/w/myfolder", 457},
        NamesFirstRow{"myfol", "/w/my-folder", 447}, NamesFirstRow{"myfol", "/w/my--folder", 437},
        NamesFirstRow{"myfol", "/w/my/folder", 407}, NamesFirstRow{"a/b", "/a/b", 260},
        NamesFirstRow{"a/b", "/a/bc", 259}, NamesFirstRow{"a/b", "/a/x/b", 210},
        NamesFirstRow{"a/b", "/a/b/c", 209}, NamesFirstRow{"a/b", "/xa/b", 150},
        // The text's start counts as a name's, and equal length earns nothing.
        NamesFirstRow{"foo", "foo", 260}, NamesFirstRow{"7", "/a/7z", 59},
        // A separator and a byte of a longer character start a run inside a word.
        NamesFirstRow{"-", "/-", -50}, NamesFirstRow{"\xc3\xa4", "/\xc3\xa4", 50},
        NamesFirstRow{"/", "/a", -1}));

TEST(NamesFirstScore, isTheMostOfAllWays)
{
    RandomTexts random(11);
    int compared = 0;
    while (compared < 4'000) {
        const std::string text = random.text();
        const std::string query = random.query();
        if (text.size() > 40 || !isSubsequence(query, text))
            continue;
        ++compared;
        int most = LOWEST;
        std::vector<std::size_t> places;
        tryAll(query, text, places, most);
        ASSERT_EQ(hundredths(query, text), most) << query << " in " << text;
        const std::vector<std::size_t> match = namesFirstMatch(query, text);
        ASSERT_EQ(match.size(), query.size());
        ASSERT_TRUE(std::ranges::is_sorted(match));
        for (std::size_t i = 0; i < match.size(); ++i)
            ASSERT_EQ(scoring::lower(text[match[i]]), scoring::lower(query[i]));
        ASSERT_EQ(scoreOf(match, text), most) << query << " in " << text;
    }
}

TEST(NamesFirstScore, hasLimits)
{
    EXPECT_EQ(namesFirstScore("", "/a"), scoring::SCORE_MIN);
    EXPECT_EQ(namesFirstScore("a", "/a" + std::string(1023, 'x')), scoring::SCORE_MIN);
    EXPECT_EQ(hundredths("a", "/a" + std::string(1022, 'x')), 60 - 1022);
    EXPECT_EQ(hundredths("a", "/a" + std::string(150, '/')), 60 - 7'500);
    EXPECT_EQ(hundredths("a", "/a" + std::string(1000, '/')), LOWEST);
    EXPECT_TRUE(namesFirstMatch("", "/a").empty());
    EXPECT_TRUE(namesFirstMatch("b", "/a").empty());
    EXPECT_TRUE(namesFirstMatch("ba", "/ab").empty());
}

TEST(NamesFirstMatch, takesLongerRunsAndLaterBytesOfEquallyGoodWays)
{
    using Places = std::vector<std::size_t>;
    EXPECT_EQ(namesFirstMatch("srcmai", "/w/src/main"), (Places{3, 4, 5, 7, 8, 9}));
    EXPECT_EQ(namesFirstMatch("foo", "/foo/foo"), (Places{5, 6, 7}));
    EXPECT_EQ(namesFirstMatch("myfol", "/my/my--folder"), (Places{4, 5, 8, 9, 10}));
}

} // namespace
} // namespace quillon
