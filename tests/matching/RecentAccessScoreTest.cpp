#include "matching/RecentAccessScore.h"

#include "prefs/PreferenceKeys.h"
#include "tests/support/FakeDefaultsStore.h"

#include <gtest/gtest.h>

#include <atomic>
#include <limits>
#include <thread>

namespace quillon {
namespace {

using Strings = std::vector<std::string>;
static_assert(RecentAccessScoreData::KEY == PreferenceKeys::RECENT_ACCESS_SCORE_DATA);
constexpr std::int64_t MOST = std::numeric_limits<std::int64_t>::max();

class RecentAccessScoreTest : public testing::Test
{
protected:
    void open(RecentAccessScore &score, const std::string &path)
    {
        // The text differs from the path, as it does for the rows of a file manager's window.
        score.addRecentAccess(
            SearchBaseResult("shown", path, {}, SearchBaseResultType::inFrontFinder));
    }

    FakeDefaultsStore settings;
    DefaultsRecentAccessScoreDataStore store{settings};
};

TEST_F(RecentAccessScoreTest, knowsNothingAtFirst)
{
    const RecentAccessScore score(store);
    EXPECT_EQ(score.score("/a"), 0.0);
    EXPECT_EQ(score.topScores(10), Strings());
    EXPECT_EQ(settings.writes(), 0);
}

TEST_F(RecentAccessScoreTest, givesEachPathItsShareAndSavesEveryUse)
{
    RecentAccessScore score(store);
    open(score, "/a");
    EXPECT_EQ(score.score("/a"), 1.0);
    EXPECT_EQ(score.score("/a/"), 0.0);
    open(score, "/b");
    open(score, "/a");
    open(score, "/a");
    EXPECT_EQ(settings.writes(), 4);
    const RecentAccessScore restarted(store);
    EXPECT_EQ(restarted.score("/a"), 0.75);
    EXPECT_EQ(restarted.score("/b"), 0.25);
    EXPECT_EQ(restarted.topScores(10), (Strings{"/a", "/b"}));
    EXPECT_EQ(
        settings.value("recent-access-score-data"),
        (DefaultsValue{DefaultsDictionary{{"/a", {std::int64_t{3}}}, {"/b", {std::int64_t{1}}}}}));
}

TEST_F(RecentAccessScoreTest, countsAFolderWithAndWithoutItsClosingSlash)
{
    RecentAccessScore score(store);
    for (const char *path : {"/a/", "/a", "/a//", "/"})
        open(score, path);
    EXPECT_EQ(
        settings.value("recent-access-score-data"),
        (DefaultsValue{DefaultsDictionary{{"/", {std::int64_t{1}}}, {"/a", {std::int64_t{3}}}}}));
}

TEST_F(RecentAccessScoreTest, takesBackAUse)
{
    RecentAccessScore score(store);
    for (const char *path : {"/a", "/a", "/b"})
        open(score, path);
    for (const char *path : {"/a/", "/b", "/b", "/never used"})
        score.takeBack(SearchBaseResult("", path, {}, SearchBaseResultType::standard));
    EXPECT_EQ(score.score("/a"), 1.0);
    EXPECT_EQ(settings.value("recent-access-score-data"),
              (DefaultsValue{DefaultsDictionary{{"/a", {std::int64_t{1}}}}}));
}

TEST_F(RecentAccessScoreTest, listsTheMostUsedFirstAndEqualOnesByPath)
{
    settings.set("recent-access-score-data", {DefaultsDictionary{{"/b", {std::int64_t{2}}},
                                                                 {"/\xC3\xA4", {std::int64_t{2}}},
                                                                 {"/B", {std::int64_t{2}}},
                                                                 {"/z", {std::int64_t{9}}},
                                                                 {"/a", {std::int64_t{1}}}}});
    const RecentAccessScore score(store);
    EXPECT_EQ(score.topScores(9), (Strings{"/z", "/B", "/b", "/\xC3\xA4", "/a"}));
    EXPECT_EQ(score.topScores(2), (Strings{"/z", "/B"}));
    EXPECT_EQ(score.topScores(0), Strings());
}

TEST_F(RecentAccessScoreTest, leavesOutEveryCountThatIsNone)
{
    settings.set("recent-access-score-data", {DefaultsArray()});
    EXPECT_EQ(RecentAccessScore(store).topScores(10), Strings());
    settings.set("recent-access-score-data", {DefaultsDictionary{{"/good", {std::int64_t{3}}},
                                                                 {"/whole", {1.0}},
                                                                 {"/fraction", {1.5}},
                                                                 {"/zero", {std::int64_t{0}}},
                                                                 {"/less", {std::int64_t{-4}}},
                                                                 {"/text", {"3"}},
                                                                 {"/also too much", {MOST - 9}},
                                                                 {"/bit more", {MOST / 4}},
                                                                 {"/too much", {MOST}},
                                                                 {"/yes", {true}}}});
    RecentAccessScore score(store);
    EXPECT_EQ(score.topScores(10), (Strings{"/bit more", "/good", "/whole"}));
    open(score, "/bit more");
    settings.set(
        "recent-access-score-data",
        {DefaultsDictionary{{"/good", {std::int64_t{3}}}, {"/a", {MOST}}, {"/whole", {1.0}}}});
    EXPECT_EQ(RecentAccessScore(store).score("/good"), 0.75);
}

TEST_F(RecentAccessScoreTest, forgetsEverything)
{
    RecentAccessScore score(store);
    open(score, "/a");
    const auto before = score.snapshot();
    score.resetScores();
    EXPECT_EQ(score.score("/a"), 0.0);
    EXPECT_EQ(score.topScores(10), Strings());
    EXPECT_EQ(settings.value("recent-access-score-data"), DefaultsValue{DefaultsDictionary()});
    EXPECT_EQ(before->share("/a"), 1.0);
    open(score, "/b");
    EXPECT_EQ(score.score("/b"), 1.0);
}

TEST_F(RecentAccessScoreTest, forgetsOnePath)
{
    RecentAccessScore score(store);
    open(score, "/a");
    open(score, "/b");
    EXPECT_TRUE(score.forgetUses("/a"));
    EXPECT_EQ(score.score("/a"), 0.0);
    EXPECT_EQ(score.score("/b"), 1.0);
    EXPECT_EQ(settings.value("recent-access-score-data"),
              (DefaultsValue{DefaultsDictionary{{"/b", {std::int64_t{1}}}}}));
    const int writes = settings.writes();
    EXPECT_TRUE(score.forgetUses("/a"));
    EXPECT_EQ(settings.writes(), writes);
    settings.failWrites();
    EXPECT_FALSE(score.forgetUses("/b"));
    EXPECT_FALSE(score.resetScores());
    EXPECT_EQ(score.topScores(10), Strings()) << "no search counts them any more";
}

TEST_F(RecentAccessScoreTest, losesNoStoredUseThatItCouldNotReadAtItsStart)
{
    RecentAccessScore score(store);
    settings.set("recent-access-score-data", {DefaultsDictionary{{"/a", {std::int64_t{3}}}}});
    open(score, "/b");
    EXPECT_EQ(score.score("/a"), 0.75);
    EXPECT_EQ(
        settings.value("recent-access-score-data"),
        (DefaultsValue{DefaultsDictionary{{"/a", {std::int64_t{3}}}, {"/b", {std::int64_t{1}}}}}));
}

TEST_F(RecentAccessScoreTest, stopsWhereACountNoLongerFits)
{
    settings.failWrites();
    RecentAccessScoreData data({{"/a", MOST}}, store);
    EXPECT_DEATH(data.recordUse("/a"), "a use count fits");
    EXPECT_DEATH(data.recordUse("/b"), "sum of all use counts");
    EXPECT_DEATH(data.topPaths(-1), "not negative");
}

TEST_F(RecentAccessScoreTest, handsSearchesSharesThatAddUpWhileUsesAreRecorded)
{
    RecentAccessScore score(store);
    open(score, "/0");
    std::atomic<bool> done = false;
    std::atomic<int> faults = 0;
    std::thread reader([&] {
        while (!done) {
            const auto snapshot = score.snapshot();
            std::int64_t sum = 0;
            for (const auto &[path, count] : snapshot->counts)
                sum += count;
            faults += sum != snapshot->totalUsages || score.score("/0") <= 0.0 ? 1 : 0;
        }
    });
    const auto openMany = [&] {
        for (int i = 0; i < 500; ++i)
            open(score, "/" + std::to_string(i % 7));
    };
    std::thread other(openMany);
    openMany();
    other.join();
    done = true;
    reader.join();
    EXPECT_EQ(faults, 0);
    EXPECT_EQ(score.snapshot()->totalUsages, 1001);
    EXPECT_EQ(RecentAccessScore(store).snapshot()->totalUsages, 1001) << "what is stored";
}

} // namespace
} // namespace quillon
