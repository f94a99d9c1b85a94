#include "actions/FrontFinderSearch.h"

#include "actions/AppleScriptRunner.h"
#include "prefs/Preferences.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/ManualTaskQueue.h"
#include "tests/support/ThreadTaskQueue.h"

#include <gmock/gmock.h>

#include <atomic>
#include <map>
#include <semaphore>
#include <thread>

namespace quillon {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;
using testing::UnorderedElementsAre;

using Texts = std::vector<std::string>;

/// A file manager in front whose items are searched, unless a test says otherwise.
template <typename Queue>
struct Front
{
    Front()
    {
        store.set("finder-quick-search", {true});
        fileManager.isInFront = true;
    }

    FakeDefaultsStore store;
    Preferences preferences{store};
    FakeFileManager fileManager;
    AppleScriptRunner scripts{fileManager};
    Queue main;
    Queue background;
    FrontFinderSearch search{{.appleScriptRunner = scripts,
                              .fileManager = fileManager,
                              .preferences = preferences,
                              .background = background,
                              .main = main}};
};

class FrontWindow : public testing::Test, protected Front<ManualTaskQueue>
{
protected:
    /// Returns the file names that are searched, with their paths, for a window that shows these
    /// items.
    std::map<std::string, std::string> fetched(const Texts &items)
    {
        fileManager.items = items;
        search.refresh([this] { ++completions; });
        background.runAll();
        main.runAll();
        return searched();
    }
    std::map<std::string, std::string> searched() const
    {
        std::map<std::string, std::string> paths;
        const FrontItems items = search.frontItems();
        if (items.cachedMatcher == nullptr)
            return {{"no", "matcher"}};
        for (const FuzzyMatchResult &match : items.cachedMatcher->match("", 100))
            paths.emplace(match.text(), items.path(match.text()));
        return paths;
    }

    int completions = 0;
};

TEST_F(FrontWindow, isSearchedByTheNamesOfItsItems)
{
    EXPECT_EQ(search.frontItems().cachedMatcher, nullptr);
    EXPECT_THAT(fetched({"/me/a/", "/me/b.txt", "//me//\xff c///", "plain", "/", ""}),
                UnorderedElementsAre(Pair("a", "/me/a/"), Pair("b.txt", "/me/b.txt"),
                                     Pair("\xff c", "//me//\xff c///"), Pair("plain", "plain")));
    EXPECT_EQ(completions, 1);
    EXPECT_THAT(fetched({"/me/a/", "/me/b", "/you/a"}),
                UnorderedElementsAre(Pair("a", "/you/a"), Pair("b", "/me/b")))
        << "the later path holds";
    EXPECT_THAT(fetched({}), IsEmpty());
    EXPECT_EQ(search.frontItems().path("b.txt"), "b.txt") << "of an earlier window";
}

TEST_F(FrontWindow, isAskedOnlyWhenItIsWanted)
{
    for (const bool isWanted : {false, true}) {
        for (const bool isInFront : {false, true}) {
            store.set("finder-quick-search", {isWanted});
            fileManager.isInFront = isInFront;
            EXPECT_EQ(search.isFinderFrontmost(), isWanted && isInFront);
            fileManager.takeCalls();
            const Texts expected = isWanted && isInFront ? Texts{"items"} : Texts{};
            EXPECT_EQ(fetched({"/a"}).size(), expected.size());
            EXPECT_EQ(fileManager.takeCalls(), expected);
        }
    }
    store.remove("finder-quick-search");
    EXPECT_FALSE(search.isFinderFrontmost());
}

TEST_F(FrontWindow, isForgottenWithItsPaths)
{
    fetched({"/me/a"});
    search.forget();
    EXPECT_EQ(search.frontItems().cachedMatcher, nullptr);
    EXPECT_EQ(search.frontItems().path("a"), "a");

    // The answer comes when nobody is waiting for it any more.
    search.refresh([this] { ++completions; });
    search.forget();
    background.runAll();
    main.runAll();
    EXPECT_EQ(search.frontItems().cachedMatcher, nullptr);
    EXPECT_EQ(completions, 1) << "that of the first fetch";
}

TEST_F(FrontWindow, keepsTheAnswerToTheNewestRefresh)
{
    Texts ended;
    fileManager.items = {"/old/a"};
    search.refresh([&ended] { ended.emplace_back("first"); });
    background.runNext();
    fileManager.items = {"/new/b"};
    search.refresh([&ended] { ended.emplace_back("second"); });
    main.runAll();
    EXPECT_EQ(search.frontItems().cachedMatcher, nullptr) << "the first was overtaken";
    background.runNext();
    main.runAll();
    EXPECT_THAT(searched(), ElementsAre(Pair("b", "/new/b")));

    // Both wait, and the older one ends last.
    ManualTaskQueue older;
    search.refresh([&ended] { ended.emplace_back("third"); });
    background.moveNextTo(older);
    fileManager.items = {"/newest/c"};
    search.refresh([&ended] { ended.emplace_back("fourth"); });
    background.runAll();
    main.runAll();
    fileManager.items = {"/late/d"};
    older.runAll();
    main.runAll();
    EXPECT_THAT(searched(), ElementsAre(Pair("c", "/newest/c")));
    EXPECT_THAT(ended, ElementsAre("second", "fourth"));
}

TEST(FrontFinderSearch, givesSearchesOneWholeAnswerAtATime)
{
    Front<ThreadTaskQueue> front;
    std::atomic<int> round = 0;
    front.fileManager.giveItems = [&round] {
        const std::string folder = "/folder " + std::to_string(++round);
        return Texts{folder + "/item/", folder + "/round " + std::to_string(round)};
    };
    std::atomic<bool> isOver = false;
    std::jthread searcher([&] {
        while (!isOver) {
            const FrontItems items = front.search.frontItems();
            if (items.cachedMatcher == nullptr)
                continue;
            const auto found = items.cachedMatcher->match("round", 25);
            ASSERT_EQ(found.size(), 1U);
            const std::string number = found.front().text().substr(std::string("round ").size());
            EXPECT_EQ(items.path("item"), "/folder " + number + "/item/");
        }
    });
    std::counting_semaphore<> done(0);
    int completions = 0;
    for (int i = 0; i < 200; ++i) {
        front.main.post([&] {
            if (completions % 10 == 9)
                front.search.forget();
            front.search.refresh([&] {
                ++completions;
                done.release();
            });
        });
        done.acquire();
    }
    isOver = true;
}

} // namespace

} // namespace quillon
