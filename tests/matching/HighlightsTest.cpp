#include "matching/Highlights.h"

#include "tests/matching/RandomTexts.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <ostream>
#include <set>

namespace quillon {

static void PrintTo(const TextRange &range, std::ostream *out)
{
    *out << range.location << ':' << range.length;
}

namespace {

struct HighlightRow
{
    const char *name;
    const char *query;
    const char *text;
    std::vector<TextRange> ranges;
    friend std::ostream &operator<<(std::ostream &out, const HighlightRow &row)
    {
        return out << row.name;
    }
};

class Highlights : public testing::TestWithParam<HighlightRow>
{};

TEST_P(Highlights, markWhatAPersonWouldMark)
{
    EXPECT_THAT(highlightRanges(GetParam().query, GetParam().text),
                testing::ElementsAreArray(GetParam().ranges));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, Highlights,
    testing::Values(
        HighlightRow{"partsOfSeveralWords", "harplans", "/harbour plans", {{9, 5}, {1, 3}}},
        HighlightRow{
            "partsOfWhatIsMarkedElsewhere", "harplans", "/Archive/harbor", {{9, 3}, {1, 2}}},
        HighlightRow{
            "theBeginningOfWhatIsMarked", "docs", "/home/u/Documents/docs", {{18, 4}, {8, 3}}},
        HighlightRow{"theLaterOfTwoAlike", "src", "/src/a/src", {{7, 3}, {2, 2}}},
        HighlightRow{"letterCaseAside", "DocS", "/dOCs", {{1, 4}}},
        HighlightRow{"noSingleCharacters", "abc", "/a/b/c", {}},
        HighlightRow{"onlyOneCharacterOccurs", "x", "/axb", {}},
        HighlightRow{"emptyQuery", "", "/aa", {}},
        HighlightRow{"runsThatBeginInsideARun", "bcxab", "/abc", {{2, 2}, {1, 2}}},
        HighlightRow{"withSlashes", "src/main", "/src/main/x", {{1, 8}}},
        HighlightRow{"runsThatOverlap", "abcdbcde", "/abcde", {{2, 4}, {1, 4}}},
        HighlightRow{
            "charactersNotBytes", "\xc3\xa4\xc3\xb6", "/\xc3\xbc\xc3\x84\xc3\x96", {{2, 2}}},
        HighlightRow{"anInvalidByteIsOne", "ab", "\xff\xfe\xc3/ab", {{4, 2}}},
        HighlightRow{"invalidBytesDiffer", "\xff\xff", "\xff\xfe\xff", {}}));

/// Implements the rule plainly, for texts of one byte a character.
std::vector<TextRange> plainHighlights(const std::string &query, const std::string &text)
{
    const auto size = static_cast<std::int64_t>(text.size());
    const auto part = [&text](const TextRange &range) {
        return text.substr(static_cast<std::size_t>(range.location),
                           static_cast<std::size_t>(range.length));
    };
    std::vector<TextRange> kept;
    std::set<std::string> marked;
    for (std::int64_t length = size; length >= 2; --length) {
        for (std::int64_t location = size - length; location >= 0; --location) {
            const TextRange range{location, length};
            const TextRange longer{location, length + 1};
            const bool isLongest =
                query.find(part(range)) != std::string::npos &&
                (location + length == size || query.find(part(longer)) == std::string::npos);
            const bool isInside = std::ranges::any_of(kept, [&](const TextRange &other) {
                return other.location <= location &&
                       location + length <= other.location + other.length;
            });
            if (isLongest && !isInside && marked.insert(part(range)).second)
                kept.push_back(range);
        }
    }
    return kept;
}

TEST(RandomHighlights, areThoseOfThePlainRule)
{
    RandomTexts random(27);
    const auto letters = [&random](std::size_t count) {
        std::string text;
        while (text.size() < count)
            text += "/abcd"[random.below(5)];
        return text;
    };
    for (int round = 0; round < 3000; ++round) {
        const std::string query = letters(1 + random.below(8));
        const std::string text = letters(random.below(24));
        EXPECT_EQ(highlightRanges(query, text), plainHighlights(query, text))
            << '"' << query << "\" in \"" << text << '"';
    }
}

TEST(NamesFirstRanges, areWhatTheBestWayMatches)
{
    const auto ranges = [](const char *query, const char *text) {
        return namesFirstRanges(query, text);
    };
    using Ranges = std::vector<TextRange>;
    EXPECT_EQ(ranges("srcmai", "/w/src/main"), (Ranges{{3, 3}, {7, 3}}));
    EXPECT_EQ(ranges("fo", "/f/o/foo"), (Ranges{{5, 2}}));
    // The first byte of the two that "\u00e4" has marks the character, as both do.
    EXPECT_EQ(ranges("\xc3\xa4x", "/\xff/\xc3\xa4x"), (Ranges{{3, 2}}));
    EXPECT_EQ(ranges("\xc3x", "/\xc3\xa4/x"), (Ranges{{1, 1}, {3, 1}}));
    EXPECT_EQ(ranges("", "/a"), Ranges{});
    EXPECT_EQ(ranges("b", "/a"), Ranges{});
}

} // namespace
} // namespace quillon
