#include "core/SearchBase.h"
#include "tests/core/SearchBaseSupport.h"
#include "tests/support/FakeFSEventService.h"
#include "tests/support/TimedTaskQueue.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <future>
#include <ostream>
#include <stop_token>
#include <string>
#include <vector>

namespace quillon {

namespace {

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Folder = WatchFilter::Folder;

class SearchBaseWatchTest : public testing::Test
{
protected:
    SearchBaseWatchTest() { base_.includeFolders({root_}); }
    FakeFSEventService::Stream &stream(std::size_t number) { return *service_.streams.at(number); }

    TemporaryFolder disk_;
    const std::string root_ = disk_.makeFolder("home");
    const std::string docs_ = disk_.makeFolder("home/docs");
    FakeFSEventService service_;
    TimedTaskQueue events_;
    SearchBaseOver<PosixFolderLister> base_{{.events = service_, .eventQueue = events_}};
};

TEST_F(SearchBaseWatchTest, bringsReportedChangesIntoTheIndex)
{
    EXPECT_FALSE(base_.searchBase.watchStatus());
    base_.build();
    ASSERT_EQ(service_.streams.size(), 1U);
    EXPECT_THAT(service_.notes(), ElementsAre("enter " + root_, "enter " + docs_));
    EXPECT_NE(stream(0).request.recorded, nullptr);
    EXPECT_NE(stream(0).request.items, nullptr);
    EXPECT_THAT(stream(0).request.paths, ElementsAre(root_));
    EXPECT_TRUE(base_.searchBase.watchStatus());

    const std::string inside = disk_.makeFolder("home/new/inside");
    fs::remove(docs_);
    stream(0).send({root_ + "/docs", root_ + "/new"});
    events_.advance(2999ms);
    EXPECT_THAT(base_.indexed(), ElementsAre(root_, docs_));
    events_.advance(1ms);
    EXPECT_THAT(base_.indexed(), ElementsAre(root_, root_ + "/new", inside));
    EXPECT_EQ(service_.notes().size(), 2U) << "an update arms nothing";
}

TEST_F(SearchBaseWatchTest, asksAgainForWhatWasNotAnswered)
{
    SearchBaseOver<FakeFolderLister> base{{.events = service_, .eventQueue = events_}};
    base.lister.add("/usr");
    base.includeFolders({"/usr"});
    base.build();
    base.lister.add("/usr/new");
    base.lister.unanswered = {"/usr/new"};
    stream(0).send({"/usr/new"});
    events_.advance(1min);
    EXPECT_THAT(base.indexed(), ElementsAre("/usr"));
    base.lister.unanswered.clear();
    events_.advance(1min);
    EXPECT_THAT(base.indexed(), ElementsAre("/usr", "/usr/new"));

    // In the end the questions are an hour apart, until something happens there again.
    base.lister.add("/usr/new/x");
    base.lister.unanswered = {"/usr/new"};
    stream(0).send({"/usr/new"});
    events_.advance(12h);
    stream(0).send({"/usr/new"});
    events_.advance(3500ms);
    base.lister.unanswered.clear();
    events_.advance(1s);
    EXPECT_THAT(base.indexed(), ElementsAre("/usr", "/usr/new", "/usr/new/x"));
}

TEST_F(SearchBaseWatchTest, letsNothingOfAnOldWatchIntoANewIndex)
{
    base_.build();
    const auto items = stream(0).request.items;
    EXPECT_TRUE(items->isIndexed(docs_));
    const std::string other = disk_.makeFolder("other");
    stream(0).send({docs_});
    events_.advance(1s);
    base_.searchBase.reset();
    EXPECT_TRUE(stream(0).isStopped && stream(0).isInvalidated);
    EXPECT_FALSE(base_.searchBase.watchStatus());
    events_.advance(1h);
    EXPECT_THAT(base_.indexed(), IsEmpty());
    EXPECT_FALSE(items->isIndexed(docs_));

    // The include folders are different by now.
    base_.build();
    stream(1).send({docs_});
    events_.advance(1s);
    base_.includeFolders({other});
    base_.build();
    EXPECT_TRUE(stream(1).isStopped);
    events_.advance(1h);
    EXPECT_THAT(base_.indexed(), ElementsAre(root_, docs_, other)) << "this build found them again";
    EXPECT_THAT(stream(2).request.paths, ElementsAre(other));
    EXPECT_FALSE(items->isIndexed(docs_)) << "an old watch sees no index";
}

TEST_F(SearchBaseWatchTest, doesNotWatchABuildThatEndsEarly)
{
    std::stop_source stop;
    stop.request_stop();
    base_.build(stop.get_token());
    EXPECT_THAT(service_.streams, IsEmpty());
    base_.searchBase.build([&](const std::string &line) {
        if (line.starts_with("Added "))
            base_.searchBase.reset();
    });
    EXPECT_THAT(service_.streams, IsEmpty());

    service_.isAbleToWatch = false;
    base_.build();
    EXPECT_THAT(base_.indexed(), ElementsAre(root_, docs_));
    EXPECT_FALSE(base_.searchBase.watchStatus());
    base_.searchBase.settle();
}

TEST_F(SearchBaseWatchTest, canBeResetWhileTheDiskIsAskedWhatToIndex)
{
    std::future<void> reset;
    base_.identity.onAsked = [&] {
        reset = std::async(std::launch::async, [&] { base_.searchBase.reset(); });
        EXPECT_EQ(reset.wait_for(60s), std::future_status::ready);
    };
    base_.build();
    EXPECT_TRUE(reset.valid());
    EXPECT_THAT(service_.streams, IsEmpty());
}

TEST_F(SearchBaseWatchTest, takesInAFolderThatComesLater)
{
    const std::string late = disk_.path("stick");
    base_.includeFolders({late, root_});
    base_.build();
    EXPECT_THAT(stream(0).request.paths, ElementsAre(root_, late));
    EXPECT_THAT(base_.searchBase.awayFolders(), ElementsAre(late));
    EXPECT_THAT(base_.indexed(), ElementsAre(root_, docs_));

    const std::string inside = disk_.makeFolder("stick/inside");
    EXPECT_EQ(stream(0).request.items->folder(late), Folder::entered);
    stream(0).send({late});
    events_.advance(3s);
    EXPECT_THAT(base_.indexed(), ElementsAre(root_, docs_, late, inside));
    EXPECT_THAT(base_.searchBase.awayFolders(), IsEmpty());

    fs::remove_all(late);
    stream(0).send({late});
    events_.advance(3s);
    EXPECT_THAT(base_.searchBase.awayFolders(), ElementsAre(late)) << "it is away again";
    base_.searchBase.reset();
    EXPECT_THAT(base_.searchBase.awayFolders(), ElementsAre(late));
}

struct ItemRow
{
    const char *path = "";
    Folder expected = Folder::entered;

    friend std::ostream &operator<<(std::ostream &stream, const ItemRow &row)
    {
        return stream << row.path;
    }
};

class ItemRows : public testing::TestWithParam<ItemRow>
{};

TEST_P(ItemRows, areJudgedAsTheCrawlJudges)
{
    const TemporaryFolder disk;
    std::vector<std::string> roots;
    for (const char *root : {"home", "home/.git/kept", "home/Box.app", "home/all"})
        roots.push_back(disk.makeFolder(root));
    FakeFSEventService service;
    TimedTaskQueue events;
    SearchBaseOver<PosixFolderLister> base{{.events = service, .eventQueue = events}};
    base.includeFolders(roots);
    base.finder.bookmarks.searchHidden(roots.back(), true);
    base.store.set("exclude-folder-patterns", {DefaultsArray{{"node_modules"}, {"a/deep"}}});
    base.build();
    EXPECT_EQ(service.streams.at(0)->request.items->folder(disk.path(GetParam().path)),
              GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(
    Folders, ItemRows,
    testing::Values(
        ItemRow{"home"}, ItemRow{"home/docs"}, ItemRow{"home/App.xcodeproj", Folder::listed},
        ItemRow{"home/.hidden", Folder::skipped}, ItemRow{"home/node_modules", Folder::skipped},
        ItemRow{"home/a/deep", Folder::skipped}, ItemRow{"home/deep"},
        ItemRow{"home/node_modules.app", Folder::skipped}, ItemRow{"home/.git/kept"},
        ItemRow{"home/.git/kept/x"}, ItemRow{"home/.git/kept/.x", Folder::skipped},
        ItemRow{"home/x/.git/y", Folder::skipped}, ItemRow{"home/all/.config"},
        ItemRow{"home/all/.config/.x"}, ItemRow{"home/all/.x.app", Folder::listed},
        ItemRow{"home/all/.git/y", Folder::skipped},
        ItemRow{"home/allied/.config", Folder::skipped}, ItemRow{"home/Box.app", Folder::listed}));

TEST_F(SearchBaseWatchTest, judgesFilesByTheExtensionsOfTheBuild)
{
    base_.store.set("include-file-patterns", {DefaultsArray{{"txt"}}});
    const std::string file = disk_.writeFile("home/a.txt");
    base_.build();
    base_.store.set("include-file-patterns", {DefaultsArray{{"pdf"}}});
    const WatchFilter &items = *stream(0).request.items;
    EXPECT_TRUE(items.includesFile("a.txt"));
    EXPECT_FALSE(items.includesFile("a.TXT"));
    EXPECT_FALSE(items.includesFile("a.pdf"));
    EXPECT_FALSE(items.includesFile(".a.txt"));
    EXPECT_TRUE(items.isIndexed(file));
    EXPECT_FALSE(items.isIndexed(root_ + "/b.txt"));
}

} // namespace

} // namespace quillon
