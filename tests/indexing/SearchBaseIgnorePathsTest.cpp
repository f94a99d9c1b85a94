#include "indexing/SearchBaseIgnorePaths.h"

#include "indexing/SearchBaseFinder.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "tests/indexing/CrawlSupport.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace quillon {

namespace {

class SearchBaseIgnorePathsTest : public testing::Test
{
protected:
    void include(const std::string &folder) { finder_.bookmarks.add(folder); }
    void onlyExclude(const std::vector<std::string> &patterns)
    {
        DefaultsArray values;
        for (const std::string &pattern : patterns)
            values.push_back({pattern});
        store_.set("exclude-folder-patterns", {values});
    }
    bool skips(const std::string &path, bool isDirectory = true)
    {
        return ignorePaths_.shouldSkip(path, path.substr(path.rfind('/') + 1), isDirectory);
    }

    TemporaryFolder disk_;
    FakeDefaultsStore store_;
    StatxFolderIdentity folders_;
    SearchBaseFinder finder_{store_, folders_};
    SearchBaseIgnorePaths ignorePaths_{finder_};
};

TEST_F(SearchBaseIgnorePathsTest, appliesTheDefaultAndBuiltInPatterns)
{
    EXPECT_FALSE(skips("/u/node_modules")) << "nothing is skipped before the first refresh";
    ignorePaths_.refresh();

    EXPECT_TRUE(skips("/u/app/node_modules"));
    EXPECT_TRUE(skips("/u/node_modules_notes")) << "as text within the path";
    EXPECT_TRUE(skips("/u/Library/Fonts"));
    EXPECT_FALSE(skips("/u/Library")) << "the pattern's last slash is not in the path";
    EXPECT_FALSE(skips("/u/library/Fonts")) << "upper and lower case are told apart";
    EXPECT_FALSE(skips("/u/app/node_modules", false)) << "files are never skipped";
    EXPECT_TRUE(ignorePaths_.shouldSkipPath("/u/.git/hooks"));
    EXPECT_FALSE(ignorePaths_.shouldSkipPath("/u/git/hooks"));
}

TEST_F(SearchBaseIgnorePathsTest, keepsWhatIsBelowAnIncludeFolderOfTheSamePattern)
{
    const std::string inside = disk_.makeFolder("Library/Foo");
    const std::string modules = disk_.makeFolder("node_modules");
    include(inside);
    include(modules);
    ignorePaths_.refresh();

    EXPECT_FALSE(ignorePaths_.shouldSkipPath(inside));
    EXPECT_FALSE(skips(inside + "/Bar"));
    EXPECT_FALSE(skips(inside + "Bar")) << "containment, not ancestry";
    EXPECT_TRUE(skips(disk_.path("Library/Other")));
    EXPECT_FALSE(ignorePaths_.shouldSkipPath(modules)) << "by its path it is kept";
    EXPECT_TRUE(skips(modules)) << "its name equals a pattern";
    EXPECT_FALSE(skips(modules + "/lib"));
    EXPECT_FALSE(skips(modules + "/Library/x"))
        << "the user's pattern comes first and decides alone";
}

TEST_F(SearchBaseIgnorePathsTest, answersTheSameUntilTheNextRefresh)
{
    ignorePaths_.refresh();
    onlyExclude({"secret"});
    EXPECT_TRUE(skips("/u/_extras"));
    EXPECT_FALSE(skips("/u/secret"));
    ignorePaths_.refresh();
    EXPECT_FALSE(skips("/u/_extras"));
    EXPECT_TRUE(skips("/u/secret"));
    EXPECT_TRUE(skips("/u/.npm/x")) << "the built-in patterns hold with any list of the user's";
}

// Uses short texts over few letters, so that patterns overlap, end in each other and override.
class SkipRulesTest : public testing::TestWithParam<unsigned>
{
protected:
    std::string randomText(std::size_t longest, bool absolute)
    {
        static constexpr std::string_view LETTERS = "ab/.\xff";
        std::string text = absolute ? "/" : "";
        for (std::size_t size = pick(longest + 1); size > 0; --size)
            text += LETTERS[pick(LETTERS.size())];
        return text;
    }
    std::vector<std::string> randomTexts(std::size_t most, std::size_t longest, bool absolute)
    {
        std::vector<std::string> texts;
        for (std::size_t count = pick(most + 1); count > 0; --count)
            texts.push_back(randomText(longest, absolute));
        return texts;
    }
    std::size_t pick(std::size_t below) { return random_() % below; }

private:
    std::mt19937 random_{GetParam()};
};

TEST_P(SkipRulesTest, answersLikeThePlainRuleForWholePathsAndStepByStep)
{
    for (int round = 0; round < 300; ++round) {
        const PlainSkipRule plain{randomTexts(6, 4, false), randomTexts(3, 6, true)};
        const SkipRules rules(plain.patterns, plain.includeFolders);
        std::string path = randomText(5, true);
        SkipRules::State state = rules.stateOf(path);
        for (int depth = 0; depth < 6; ++depth) {
            std::string name = randomText(4, false);
            std::erase(name, '/');
            path += "/" + name;
            const auto wholePath = [&] { return std::string_view(path); };
            state = rules.below(state, name);
            SkipRules::State whole = rules.stateOf(path);
            const bool expected = plain.skips(path, name);
            ASSERT_EQ(rules.skips(whole, name, wholePath), expected) << path;
            ASSERT_EQ(rules.skips(state, name, wholePath), expected) << path;
            whole = rules.stateOf(path);
            ASSERT_EQ(rules.skipsPath(whole, wholePath), plain.skipsPath(path)) << path;
        }
    }
}

INSTANTIATE_TEST_SUITE_P(Seeds, SkipRulesTest, testing::Range(1U, 11U));

} // namespace

} // namespace quillon
