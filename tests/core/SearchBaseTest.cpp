#include "core/SearchBase.h"

#include "tests/core/SearchBaseSupport.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <string>
#include <vector>

namespace quillon {

namespace {

using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::ElementsAreArray;
using testing::IsEmpty;
using testing::Pointee;
using testing::Property;

auto isRow(SearchBaseResultType type, const std::string &text)
{
    return Pointee(AllOf(Property(&SearchBaseResult::type, type),
                         Property(&SearchBaseResult::text, text),
                         Property(&SearchBaseResult::path, text)));
}
auto isStandard(const std::string &text)
{
    return isRow(SearchBaseResultType::standard, text);
}
auto goesTo(const std::string &text)
{
    return AllOf(isRow(SearchBaseResultType::goToPath, text),
                 Pointee(Property(&SearchBaseResult::highlightRanges, IsEmpty())));
}

using Base = SearchBaseOver<FakeFolderLister>;

TEST(SearchBase, ranksMatchesAndMarksThem)
{
    Base base;
    for (const char *path : {"/a/plain docs", "/a/docs", "/a/docs/x", "/a/none"})
        base.matcher.add(path);
    const auto rows = base.searchBase.search("docs");
    EXPECT_THAT(rows, ElementsAre(isStandard("/a/docs"), isStandard("/a/docs/x"),
                                  isStandard("/a/plain docs")));
    EXPECT_THAT(rows.front()->highlightRanges(), ElementsAre(TextRange{3, 4}));
    EXPECT_THAT(base.searchBase.search("Docs"), IsEmpty());
}

TEST(SearchBase, offersAPathToGoToWhileTheListHasRoom)
{
    for (const std::size_t matches : {0U, 1U, 24U, 25U, 30U}) {
        Base base;
        for (std::size_t i = 0; i < matches; ++i)
            base.matcher.add("/data/" + std::to_string(10 + i));
        const auto rows = base.searchBase.search("/data");
        const std::size_t standard = std::min<std::size_t>(matches, 25);
        ASSERT_EQ(rows.size(), standard + (matches <= 24 ? 1 : 0)) << matches;
        if (matches <= 24) {
            EXPECT_THAT(rows.back(), goesTo("/data"));
        }
        EXPECT_THAT(
            std::vector(rows.begin(), rows.begin() + static_cast<std::ptrdiff_t>(standard)),
            Each(Pointee(Property(&SearchBaseResult::type, SearchBaseResultType::standard))));
    }
}

TEST(SearchBase, keepsTheBlanksAroundAPathToGoTo)
{
    const Base base;
    for (const char *blank : {"", "  ", "\t", "\u00a0", "\u1680", "\u2000", "\u2005", "\u200a",
                              "\u202f", "\u205f", "\u3000", " \t\u3000 "}) {
        const std::string query = std::string(blank) + "/tmp" + blank;
        EXPECT_THAT(base.searchBase.search(query), ElementsAre(goesTo(query)));
    }
    for (const char *query : {"/", "//", "/\xff\n", "  /tmp "})
        EXPECT_THAT(base.searchBase.search(query), ElementsAre(goesTo(query)));
    // Line breaks and characters without width are not blanks, and neither are single bytes of a
    // blank.
    for (const char *query : {"", " ", "tmp", "a/tmp", "~/tmp", "\n/tmp", "\r/tmp", "\v/tmp",
                              "\u200b/tmp", "\ufeff/tmp", "\u2028/tmp", "\xe2\x80/tmp", "\xa0/tmp"})
        EXPECT_THAT(base.searchBase.search(query), IsEmpty()) << query;
}

std::vector<std::string> mostAccessed(const Base &base)
{
    std::vector<std::string> texts;
    for (const SearchBaseResultRef &row : base.searchBase.mostAccessedResults()) {
        EXPECT_THAT(row, isStandard(row->path()));
        texts.push_back(row->text());
    }
    return texts;
}

TEST(SearchBase, listsTheTenMostUsedFoldersThatAreIndexed)
{
    Base base;
    std::vector<std::string> byUse;
    for (int i = 0; i < 12; ++i) {
        byUse.push_back("/used/" + std::to_string(10 + i));
        base.matcher.add(byUse.back());
        const SearchBaseResult row(byUse.back(), byUse.back(), {}, SearchBaseResultType::standard);
        for (int uses = 30 - i; uses > 0; --uses)
            base.matcher.uprankResult(row);
    }
    base.matcher.add("/never used");
    byUse.resize(10);
    EXPECT_THAT(mostAccessed(base), ElementsAreArray(byUse));

    base.matcher.remove(byUse.front());
    byUse.erase(byUse.begin());
    EXPECT_THAT(mostAccessed(base), ElementsAreArray(byUse));
    base.searchBase.reset();
    EXPECT_THAT(mostAccessed(base), IsEmpty());
    for (const std::string &path : byUse)
        base.matcher.add(path);
    EXPECT_THAT(mostAccessed(base), ElementsAreArray(byUse));
}

} // namespace

} // namespace quillon
