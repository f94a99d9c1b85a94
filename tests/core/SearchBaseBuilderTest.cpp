#include "core/SearchBaseBuilder.h"

#include "tests/core/SearchBaseSupport.h"
#include "tests/support/ManualTaskQueue.h"
#include "tests/support/MemoryCacheFile.h"

#include <gmock/gmock.h>

#include <atomic>
#include <string>
#include <utility>
#include <vector>

namespace quillon {

namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

} // namespace

class SearchBaseBuilderTest : public testing::Test, protected SearchBaseBuildObserver
{
protected:
    SearchBaseBuilderTest()
    {
        builder.addObserver(*this);
        for (const char *folder : {"a/one", "a/two"})
            disk.makeFolder(folder);
        include({A});
    }

    void buildBegan() override { told.emplace_back("began"); }
    void buildProgressed(const std::string &line) override { told.push_back(line); }
    void indexRestored() override { told.emplace_back("restored"); }
    void buildEnded() override { told.emplace_back("ended"); }

    void include(const std::vector<std::string> &folders) { base.includeFolders(folders); }
    void runAll()
    {
        while (!background.isEmpty() || !main.isEmpty()) {
            background.runAll();
            main.runAll();
        }
    }
    std::vector<std::string> takeTold() { return std::exchange(told, {}); }

    TemporaryFolder disk;
    const std::string A = disk.makeFolder("a");
    const std::string B = disk.makeFolder("b");
    SearchBaseOver<PosixFolderLister> base;
    ManualTaskQueue background;
    ManualTaskQueue main;
    SearchBaseBuilder builder{{.searchBase = base.searchBase,
                               .searchBaseFinder = base.finder,
                               .background = background,
                               .main = main}};
    std::vector<std::string> told;
};

TEST_F(SearchBaseBuilderTest, emptiesTheIndexAtOnceAndFillsItInTheBackground)
{
    base.matcher.add("/old");
    builder.start();
    EXPECT_EQ(base.matcher.count(), 0U);
    EXPECT_THAT(takeTold(), ElementsAre("began"));
    background.runAll();
    EXPECT_THAT(told, IsEmpty()) << "nothing is told off the main thread";
    main.runAll();
    EXPECT_THAT(takeTold(), ElementsAre("Starting search with " + A, "Scanning " + A,
                                        StartsWith("Processing "), "Added 3 items", "ended"));
    EXPECT_FALSE(builder.isBuilding());
    EXPECT_TRUE(builder.hasLocations());
    EXPECT_THAT(builder.lastBuild()->locations.folders, ElementsAre(A));
    EXPECT_THAT(builder.lastBuild()->locations.filePatterns, Contains("xcodeproj"));
}

TEST_F(SearchBaseBuilderTest, buildsOnceForRequestsThatWantTheSame)
{
    builder.start();
    builder.start();
    background.runNext();
    builder.start();
    runAll();
    EXPECT_THAT(takeTold(), AllOf(Contains("began").Times(1), Contains("ended").Times(1)));
    builder.start();
    runAll();
    EXPECT_THAT(takeTold(), Contains("began")) << "asked for afterwards it is built";
}

TEST_F(SearchBaseBuilderTest, buildsOnceMoreWhenTheSettingsChangedMeanwhile)
{
    builder.start();
    background.runNext();
    include({A, B});
    builder.start();
    runAll();
    EXPECT_THAT(takeTold(), AllOf(Contains("began").Times(2), Contains("ended").Times(1)));
    EXPECT_THAT(base.indexed(), ElementsAre(A, A + "/one", A + "/two", B));
    EXPECT_THAT(builder.lastBuild()->locations.folders, ElementsAre(A, B));
}

TEST_F(SearchBaseBuilderTest, losesNoRequestWhileItLooksForChanges)
{
    builder.start();
    builder.start();
    background.runNext();
    main.runAll();
    background.runNext(); // nothing has changed
    include({B});
    builder.start();
    runAll();
    EXPECT_THAT(base.indexed(), ElementsAre(B));
    EXPECT_FALSE(builder.isBuilding());
}

TEST_F(SearchBaseBuilderTest, looksAtEachFolderOnceABuildAndInTheBackground)
{
    include({A, B});
    bool isInBackground = false;
    std::atomic<int> asked = 0;
    base.identity.onAsked = [&] {
        EXPECT_TRUE(isInBackground);
        ++asked;
    };
    builder.start();
    isInBackground = true;
    background.runAll();
    isInBackground = false;
    main.runAll();
    EXPECT_EQ(asked, 2);
    EXPECT_THAT(builder.lastBuild()->locations.folders, ElementsAre(A, B));
}

TEST_F(SearchBaseBuilderTest, buildsAgainWhenAFolderHasComeUnnoticed)
{
    const std::string late = disk.path("late");
    include({A, late});
    builder.start();
    const auto lookOnce = [&] {
        main.runNext(); // the time has come
        background.runAll();
        main.runNext();
    };
    background.runAll();
    while (builder.isBuilding())
        main.runNext();
    EXPECT_TRUE(builder.hasLocations());
    lookOnce();
    EXPECT_FALSE(builder.isBuilding());
    disk.makeFolder("late/inside");
    lookOnce();
    EXPECT_TRUE(builder.isBuilding());
    runAll();
    EXPECT_THAT(builder.lastBuild()->locations.folders, ElementsAre(A, late));
    EXPECT_TRUE(main.isEmpty()) << "nothing is away any more";
}

TEST_F(SearchBaseBuilderTest, tellsThatThereIsNothingToIndex)
{
    include({});
    EXPECT_TRUE(builder.hasLocations()) << "not known yet";
    builder.start();
    runAll();
    EXPECT_FALSE(builder.hasLocations());
    include({A});
    builder.start();
    runAll();
    EXPECT_TRUE(builder.hasLocations());
}

TEST_F(SearchBaseBuilderTest, buildsNothingOnceStopped)
{
    builder.start();
    builder.start();
    builder.stop();
    runAll();
    EXPECT_FALSE(builder.isBuilding());
    EXPECT_THAT(takeTold(), AllOf(Contains("ended"), Not(Contains(StartsWith("Added ")))));
    builder.start();
    EXPECT_THAT(told, IsEmpty());
}

TEST_F(SearchBaseBuilderTest, isCancelledUntilAnotherBuildIsWanted)
{
    builder.start();
    builder.start();
    builder.cancel();
    runAll();
    EXPECT_TRUE(builder.isCancelled()) << "the build that was to follow is cancelled, too";
    EXPECT_THAT(takeTold(), AllOf(Contains("ended"), Not(Contains(StartsWith("Added ")))));

    builder.start();
    builder.cancel();
    builder.start(); // before the cancelled one has ended
    runAll();
    EXPECT_FALSE(builder.isBuilding());
    EXPECT_FALSE(builder.isCancelled());
    EXPECT_THAT(takeTold(), Contains(StartsWith("Added ")));
}

TEST_F(SearchBaseBuilderTest, comparesTheIndexOfTheLastRunOnce)
{
    MemoryCacheFile file;
    for (const bool isKept : {false, true}) {
        SearchBaseOver<PosixFolderLister> run(file);
        run.includeFolders({A});
        SearchBaseBuilder ofRun({.searchBase = run.searchBase,
                                 .searchBaseFinder = run.finder,
                                 .background = background,
                                 .main = main});
        ofRun.addObserver(*this);
        ofRun.start();
        takeTold();
        background.runAll();
        EXPECT_FALSE(ofRun.isComparing());
        main.runNext();
        EXPECT_EQ(ofRun.isComparing(), isKept);
        EXPECT_EQ(told == std::vector<std::string>{"restored"}, isKept);
        runAll();
        EXPECT_FALSE(ofRun.isComparing());
        EXPECT_EQ(run.searchBase.count(), 3U);
        EXPECT_EQ(file.writes, 1);

        // A rebuild that the user asks for reads everything.
        ofRun.start();
        takeTold();
        runAll();
        EXPECT_THAT(told, Not(Contains("restored")));
    }
}

} // namespace quillon
