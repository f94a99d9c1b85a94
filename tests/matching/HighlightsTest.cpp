#include "matching/Highlights.h"

#include <gmock/gmock.h>

#include <ostream>

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
            "noPartOfWhatIsMarked", "harplans", "/Archive/Sons/harvest plans", {{22, 5}, {14, 3}}},
        HighlightRow{"theLaterOfTwoAlike", "src", "/src/a/src", {{7, 3}}},
        HighlightRow{"letterCaseAside", "DocS", "/dOCs", {{1, 4}}},
        HighlightRow{"noSingleCharacters", "abc", "/a/b/c", {}},
        HighlightRow{"onlyOneCharacterOccurs", "x", "/axb", {}},
        HighlightRow{"emptyQuery", "", "/aa", {}},
        HighlightRow{"runsThatBeginInsideARun", "bcxab", "/abc", {{2, 2}}},
        HighlightRow{"withSlashes", "src/main", "/src/main/x", {{1, 8}}},
        HighlightRow{"noOverlapWithALongerRun", "abcdbcde", "/abcde", {{2, 4}}},
        HighlightRow{
            "charactersNotBytes", "\xc3\xa4\xc3\xb6", "/\xc3\xbc\xc3\x84\xc3\x96", {{2, 2}}},
        HighlightRow{"anInvalidByteIsOne", "ab", "\xff\xfe\xc3/ab", {{4, 2}}},
        HighlightRow{"invalidBytesDiffer", "\xff\xff", "\xff\xfe\xff", {}}));

} // namespace
} // namespace quillon
