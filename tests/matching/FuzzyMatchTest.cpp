#include "matching/FuzzyMatch.h"

#include "base/TextFolding.h"
#include "matching/FuzzyScore.h"
#include "matching/Highlights.h"
#include "matching/NamesFirstScore.h"
#include "matching/RecentAccessScore.h"
#include "tests/matching/RandomTexts.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/WithoutThreads.h"

#include <climits>
#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <set>
#include <sstream>
#include <thread>

namespace quillon {
namespace {

using testing::ElementsAre;
using Scored = std::pair<std::string, double>;

bool holdsInSomeName(const std::string &word, const std::string &text)
{
    std::istringstream names(text);
    for (std::string name; std::getline(names, name, '/');)
        if (isSubsequence(word, name))
            return true;
    return false;
}

/// Applies the rule itself, to each text on its own. In any order, the rule is that of the folded
/// text for each word.
std::vector<Scored> rankPlainly(const std::set<std::string> &texts, const std::string &query,
                                std::size_t top, const RecentAccessSnapshot &uses, MatchOrder order,
                                bool inAnyOrder = false)
{
    const auto score = order == MatchOrder::names ? namesFirstScore : fuzzyScore;
    const std::vector<std::string> words = foldedWords(query);
    std::vector<Scored> ranked;
    for (const std::string &text : texts) {
        if (!inAnyOrder) {
            if (isSubsequence(query, text))
                ranked.emplace_back(text, score(query, text) + uses.share(text));
            continue;
        }
        const std::string folded = foldedText(text).value_or(text);
        if (!std::ranges::all_of(words, [&](auto &word) { return holdsInSomeName(word, folded); }))
            continue;
        double sum = 0;
        for (const std::string &word : words)
            sum += score(word, folded);
        if (order == MatchOrder::names)
            sum = std::round(sum * namesfirst::HUNDREDTHS) / namesfirst::HUNDREDTHS;
        ranked.emplace_back(text, sum + uses.share(text));
    }
    std::ranges::stable_sort(ranked, [order](const Scored &a, const Scored &b) {
        const bool asksLength = order == MatchOrder::names && a.second != scoring::SCORE_MIN;
        return asksLength && a.second == b.second ? a.first.size() < b.first.size()
                                                  : a.second > b.second;
    });
    ranked.resize(std::min(top, ranked.size()));
    return ranked;
}

class FuzzyMatchRanking : public testing::Test
{
protected:
    void recordUse(const std::string &path)
    {
        match.uprankResult({path, path, {}, SearchBaseResultType::standard});
    }
    /// Holds both orders against their rules.
    void expectPlainRanking(const std::set<std::string> &texts, const std::string &query,
                            std::size_t top)
    {
        for (const MatchOrder order : {MatchOrder::path, MatchOrder::names}) {
            const auto expected = rankPlainly(texts, query, top, *uses.snapshot(), order);
            const auto actual = match.match(query, top, order);
            ASSERT_EQ(actual.size(), expected.size()) << query;
            for (std::size_t i = 0; i < actual.size(); ++i) {
                const std::string &text = actual[i].text();
                ASSERT_EQ(text, expected[i].first) << query << " at " << i;
                ASSERT_EQ(std::bit_cast<std::uint64_t>(actual[i].score()),
                          std::bit_cast<std::uint64_t>(expected[i].second))
                    << query << " for " << text;
                ASSERT_EQ(actual[i].highlightRanges(), order == MatchOrder::names
                                                           ? namesFirstRanges(query, text)
                                                           : highlightRanges(query, text));
            }
        }
    }
    /// Holds the further matches of words in any order against the rule of each order.
    void expectPlainWords(const std::set<std::string> &texts, const std::string &query,
                          std::size_t top)
    {
        for (const MatchOrder order : {MatchOrder::path, MatchOrder::names}) {
            std::vector<FuzzyMatchResult> actual;
            match.addWordMatches(query, top, order, actual);
            const auto expected = rankPlainly(texts, query, top, *uses.snapshot(), order, true);
            ASSERT_EQ(actual.size(), expected.size()) << query;
            for (std::size_t i = 0; i < actual.size(); ++i) {
                ASSERT_EQ(actual[i].text(), expected[i].first) << query << " at " << i;
                ASSERT_EQ(actual[i].score(), expected[i].second) << query;
            }
        }
    }
    std::vector<std::string> textsFor(const std::string &query, std::size_t top = 25)
    {
        std::vector<std::string> texts;
        for (const FuzzyMatchResult &result : match.match(query, top))
            texts.push_back(result.text());
        return texts;
    }

    FakeDefaultsStore defaults;
    DefaultsRecentAccessScoreDataStore store{defaults};
    RecentAccessScore uses{store};
    FuzzyMatch match{&uses};
};

TEST_F(FuzzyMatchRanking, equalsThePlainRuleUnderRandomEdits)
{
    RandomTexts random(3);
    std::set<std::string> texts;
    for (int round = 0; round < 40; ++round) {
        for (int i = 0; i < 60; ++i) {
            const std::string text = random.text();
            match.add(text);
            texts.insert(text);
        }
        for (int i = 0; i < 30; ++i) {
            const auto victim =
                std::next(texts.begin(), static_cast<long>(random.below(texts.size())));
            match.remove(*victim);
            texts.erase(victim);
        }
        match.remove("/never/added");
        recordUse(random.below(3) == 0 ? "/not/indexed" : *texts.begin());
        for (int i = 0; i < 12; ++i)
            expectPlainRanking(texts, random.query(), i % 3 == 0 ? 10'000 : 1 + random.below(30));
        for (int i = 0; i < 12; ++i) {
            const std::string words = random.query() + " " + random.query();
            if (!foldedWords(words).empty())
                expectPlainWords(texts, words, i % 3 == 0 ? 10'000 : 1 + random.below(30));
        }
        expectPlainRanking(texts, *texts.begin(), 25);
        expectPlainRanking(texts, "", 5);
    }
    EXPECT_EQ(match.count(), texts.size());
}

TEST_F(FuzzyMatchRanking, equalsThePlainRuleWithLongQueries)
{
    std::set<std::string> texts;
    for (const std::size_t length : {31U, 32U, 33U, 100U, 1023U, 1024U, 1025U, 3'000U}) {
        texts.insert("/" + std::string(length - 1, 'a'));
        texts.insert("/" + std::string(length / 2, 'a') + "/" + std::string(length / 2, 'b'));
    }
    for (const std::string &text : texts)
        match.add(text);
    for (const std::size_t length : {8U, 9U, 31U, 32U, 33U, 500U, 1024U, 1025U, 3'000U}) {
        expectPlainRanking(texts, std::string(length, 'a'), 6);
        expectPlainRanking(texts, "/" + std::string(length - 1, 'a'), 6);
        expectPlainRanking(texts, std::string(length / 2, 'a') + std::string(length / 2, 'b'), 3);
    }
}

TEST_F(FuzzyMatchRanking, equalsThePlainRuleOnTwoThreads)
{
    RandomTexts random(5);
    std::set<std::string> texts;
    while (texts.size() < 30'000)
        texts.insert("/" + random.name() + random.text() + random.name());
    for (const std::string &text : texts)
        match.add(text);
    match.setSearchThreads(2);
    for (int i = 0; i < 25; ++i) {
        // In every second round some more of the texts have uses.
        for (int use = 0; i % 2 == 1 && use < 20; ++use)
            recordUse(*std::next(texts.begin(), static_cast<long>(random.below(texts.size()))));
        expectPlainRanking(texts, random.query(), 25);
    }
}

TEST_F(FuzzyMatchRanking, needsNoSecondThread)
{
    for (int i = 0; i < 25'000; ++i)
        match.add("/folder " + std::to_string(i));
    match.setSearchThreads(2);
    EXPECT_TRUE(holdsWithoutThreads([&] { return textsFor("folder 24999").size() == 1; }));
}

TEST_F(FuzzyMatchRanking, ordersAsAUserExpects)
{
    for (const char *text : {"/u/docs", "/u/odoxcs", "/U/A", "/u/a.docs", "/u/Docs", "docs"})
        match.add(text);
    match.add("docs");
    EXPECT_THAT(textsFor("docs"),
                ElementsAre("docs", "/u/Docs", "/u/docs", "/u/a.docs", "/u/odoxcs"));
    EXPECT_THAT(textsFor("D"), ElementsAre("/u/Docs"));
    EXPECT_THAT(textsFor("docs", 2), ElementsAre("docs", "/u/Docs"));
    EXPECT_THAT(textsFor("docs", 0), ElementsAre());
    recordUse("/u/docs");
    EXPECT_THAT(textsFor("docs", 2), ElementsAre("docs", "/u/docs"));
}

TEST_F(FuzzyMatchRanking, putsNamesFirstWhereAsked)
{
    for (const char *text : {"/u/docs/a", "/docs/u/b", "/u/x/docs", "/u/docs-old", "/docs/docs"})
        match.add(text);
    const auto namesFirst = [this](const std::string &query) {
        std::vector<std::string> texts;
        for (const FuzzyMatchResult &result : match.match(query, 3, MatchOrder::names))
            texts.push_back(result.text());
        return texts;
    };
    EXPECT_THAT(namesFirst("docs"), ElementsAre("/u/x/docs", "/docs/docs", "/u/docs-old"));
    recordUse("/u/docs-old");
    EXPECT_THAT(namesFirst("docs"), ElementsAre("/u/docs-old", "/u/x/docs", "/docs/docs"));
}

TEST_F(FuzzyMatchRanking, addsWordsInAnyOrderAndWithoutAccents)
{
    for (const char *text :
         {"/harbour/plans", "/plans of the harbour", "/plans/harbour/x", "/Übergrößen/Ålesund",
          "/ubergrossen", "/\u00c5lesund/u\u0308bergro\u0308\u00dfen", "/harbour", "/plans"})
        match.add(text);
    const auto found = [this](const std::string &query, std::size_t top = 25) {
        std::vector<FuzzyMatchResult> results = match.match(query, top);
        match.addWordMatches(query, top, MatchOrder::path, results);
        std::vector<std::string> texts;
        for (const FuzzyMatchResult &result : results)
            texts.push_back(result.text());
        return texts;
    };
    EXPECT_THAT(found("harbour plans"),
                ElementsAre("/harbour/plans", "/plans/harbour/x", "/plans of the harbour"));
    EXPECT_THAT(found("plans harbour"),
                ElementsAre("/plans of the harbour", "/harbour/plans", "/plans/harbour/x"))
        << "what matches as typed comes first, and once";
    EXPECT_THAT(found("plans harbour", 2), ElementsAre("/plans of the harbour", "/harbour/plans"));
    EXPECT_THAT(found("ÜBERGRÖSS"), testing::SizeIs(3));
    EXPECT_THAT(found("alesund/übergröße"), testing::SizeIs(2)) << "a slash separates words too";
    for (const char *none : {" / ", "\u0301", "a b c d e f g h i", "plans missing"})
        EXPECT_THAT(found(none), testing::IsEmpty()) << none;

    std::vector<FuzzyMatchResult> marked;
    match.addWordMatches("lesu großen", 2, MatchOrder::path, marked);
    EXPECT_THAT(marked.front().highlightRanges(), ElementsAre(TextRange{5, 6}, TextRange{13, 4}));
}

TEST_F(FuzzyMatchRanking, listsTheMostUsedAmongTheCandidates)
{
    EXPECT_THAT(match.mostAccessedResults(10), ElementsAre());
    for (const char *path : {"/a", "/b", "/gone", "/b", "/gone", "/gone"})
        recordUse(path);
    match.add("/a");
    match.add("/b");
    EXPECT_THAT(match.mostAccessedResults(10),
                ElementsAre(FuzzyMatchResult("/b", 1.0, {}), FuzzyMatchResult("/a", 1.0, {})));
    EXPECT_THAT(match.mostAccessedResults(2), ElementsAre(FuzzyMatchResult("/b", 1.0, {})));
    match.reset();
    EXPECT_EQ(match.count(), 0U);
    EXPECT_EQ(uses.score("/gone"), 0.5);
}

TEST_F(FuzzyMatchRanking, findsWhatIsThereWhileTheIndexChanges)
{
    // Every search must find what stays. It may find what comes and goes, which scores higher.
    for (int i = 0; i < 25'000; ++i)
        match.add("/stays/" + std::to_string(i % 50) + "/folder" + std::to_string(i));
    match.add("/stays/wanted");
    for (int i = 0; i < 25; ++i)
        match.add("/stays/some/where/else/where/nobody/looks/wanted" + std::to_string(i));
    std::atomic<bool> done = false;
    std::jthread writer([&] {
        for (int round = 0; !done; ++round) {
            const std::string folder = "/comes/" + std::to_string(round % 7);
            std::vector<std::string> texts;
            for (int i = 0; i < 300; ++i)
                texts.push_back(folder + "/wanted" + std::to_string(i));
            const std::vector<std::string_view> views(texts.begin(), texts.end());
            match.add(views);
            for (const std::string &text : texts)
                match.remove(text);
        }
    });
    std::jthread reader([&] {
        while (!done) {
            match.match("folder7", 25);
            match.arrange();
        }
    });
    for (int i = 0; i < 40; ++i) {
        const std::vector<std::string> texts = textsFor("/stays/wanted");
        ASSERT_FALSE(texts.empty());
        ASSERT_EQ(texts.front(), "/stays/wanted");
        ASSERT_EQ(textsFor("wanted").size(), 25U) << "what was removed meanwhile is replaced";
    }
    done = true;
    writer.join();
    reader.join();
    EXPECT_EQ(match.count(), 25'026U);
}

TEST_F(FuzzyMatchRanking, survivesBeingEmptiedDuringASearch)
{
    std::atomic<bool> done = false;
    std::jthread searcher([&] {
        while (!done)
            textsFor("a1/f2");
    });
    for (int round = 0; round < 5; ++round) {
        for (int i = 0; i < 3000; ++i)
            match.add("/a" + std::to_string(i % 100) + "/f" + std::to_string(i));
        match.reset();
    }
    done = true;
    searcher.join();
    EXPECT_THAT(textsFor("a1"), ElementsAre());
}

} // namespace
} // namespace quillon
