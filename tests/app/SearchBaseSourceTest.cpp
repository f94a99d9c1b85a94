#include "app/panel/SearchBaseSource.h"

#include "actions/ActionFailure.h"
#include "actions/AppleScriptRunner.h"
#include "actions/FrontFinderSearch.h"
#include "app/ActionFailures.h"
#include "core/SearchBaseBuilder.h"
#include "platform/Notifications.h"
#include "platform/Places.h"
#include "prefs/KeptFolders.h"
#include "prefs/Preferences.h"
#include "tests/core/SearchBaseSupport.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/ManualTaskQueue.h"
#include "tests/support/PlainWindowSystem.h"

#include <QApplication>
#include <QTest>

#include <gmock/gmock.h>

#include <semaphore>

namespace quillon {

using testing::ElementsAre;
using testing::IsEmpty;

/// Shows nothing, as on a desktop without notifications.
class FakeNotifications final : public Notifications
{
public:
    std::vector<std::string> shown;
    bool isAvailable = true;

    void show(const Notification &notification, std::function<void()> unavailable) override
    {
        if (isAvailable)
            shown.push_back(notification.title);
        else
            unavailable();
    }
};

/// A disk whose server hangs until the test lets it answer.
class HangingLister final : public FolderLister
{
public:
    std::unique_ptr<OpenFolder> open(const std::string &, Wanted, std::error_code &) override
    {
        return nullptr;
    }
    Kind kind(const std::string &) override
    {
        ++calls;
        answers.acquire();
        return Kind::folder;
    }

    std::atomic<int> calls = 0;
    std::counting_semaphore<> answers{0};
};

class FakePlaces : public Places
{
public:
    std::vector<std::string> folders() const override { return offered; }
    std::vector<std::string> mountedDisks() const override { return {}; }
    std::vector<std::string> offered;
};

class SearchBaseSourceTest : public testing::Test
{
protected:
    SearchBaseSource source(FolderLister &disk)
    {
        return {{.searchBase = base_.searchBase,
                 .finder = base_.finder,
                 .builder = builder_,
                 .frontFinderSearch = front_,
                 .places = places_,
                 .recentAccessScore = base_.score,
                 .useQueue = queue_,
                 .keptFolders = kept_,
                 .preferences = preferences_,
                 .disk = disk},
                home_.path()};
    }
    void build(const std::vector<std::string> &folders)
    {
        base_.includeFolders(folders);
        builder_.start();
        // A folder that is missing is looked for every minute, so the queue never becomes empty.
        while (builder_.isBuilding())
            queue_.runNext();
    }
    static std::string selected(const PanelSource::Answer &answer)
    {
        return answer.results.at(static_cast<std::size_t>(answer.selectedRow))->path();
    }
    void report(const std::string &path, Notifications &notifications)
    {
        const auto row = std::make_shared<SearchBaseResult>(path, path, std::vector<TextRange>(),
                                                            SearchBaseResultType::standard);
        base_.score.addRecentAccess(*row);
        ActionFailures failures({.recentAccessScore = base_.score,
                                 .useQueue = queue_,
                                 .searchBase = base_.searchBase,
                                 .builder = builder_,
                                 .notifications = notifications,
                                 .windowSystem = windows_,
                                 .background = queue_});
        failures.report({.reason = ActionFailure::Reason::itemGone, .result = row});
        hasWindow_ = std::ranges::any_of(QApplication::topLevelWidgets(), &QWidget::isVisible);
        queue_.runAll();
    }

    TemporaryFolder home_;
    FakePlaces places_;
    SearchBaseOver<PosixFolderLister> base_;
    KeptFolders kept_{base_.store};
    ManualTaskQueue queue_;
    SearchBaseBuilder builder_{{.searchBase = base_.searchBase,
                                .searchBaseFinder = base_.finder,
                                .background = queue_,
                                .main = queue_}};
    Preferences preferences_{base_.store};
    FakeFileManager fileManager_;
    AppleScriptRunner scripts_{fileManager_};
    FrontFinderSearch front_{{.appleScriptRunner = scripts_,
                              .fileManager = fileManager_,
                              .preferences = preferences_,
                              .background = queue_,
                              .main = queue_}};
    PosixFolderLister disk_;
    PlainWindowSystem windows_;
    bool hasWindow_ = false;
};

TEST_F(SearchBaseSourceTest, selectsTheRowOfAPathThatExists)
{
    home_.makeFolder("Documents/sub");
    home_.writeFile("Documents/letter.txt");
    build({home_.path()});
    const SearchBaseSource source = this->source(disk_);
    const std::string indexed = home_.path("Documents/sub");
    struct
    {
        std::string query;
        std::string selected;
    } rows[] = {
        {home_.path("Documents"), home_.path("Documents")},
        {home_.path("Documents/"), home_.path("Documents/")},
        {home_.path("Doc"), home_.path("Documents")},
        {home_.path("Documents/letter.txt"), home_.path("Documents/letter.txt")},
        {"~/Documents/", home_.path("Documents/")},
        {"~/Documents/s", indexed},
        {"/tmp", "/tmp"},
        {"ocuments/sub", indexed},
    };
    for (const auto &row : rows)
        EXPECT_EQ(selected(source.search(row.query)), row.selected) << row.query;
    EXPECT_EQ(source.search("~/Documents/").results.back()->path(), home_.path("Documents/"))
        << "the path to go to is the last row";
    EXPECT_THAT(source.search("a~/Documents").results, IsEmpty());
}

TEST_F(SearchBaseSourceTest, ranksByTheOrderInForce)
{
    const std::string inside = home_.makeFolder("harbour/x");
    const std::string deeper = home_.makeFolder("other/harbour");
    build({home_.path()});
    const SearchBaseSource source = this->source(disk_);
    const auto last = [&] { return source.search("harbour").results.back()->path(); };
    EXPECT_EQ(last(), deeper);
    preferences_.matchOrder.select(Preferences::MatchOrder::names);
    EXPECT_EQ(last(), inside);
    EXPECT_THAT(source.search("hx").results.back()->highlightRanges(),
                ElementsAre(TextRange{static_cast<std::int64_t>(inside.size()) - 9, 1},
                            TextRange{static_cast<std::int64_t>(inside.size()) - 1, 1}))
        << "the marks are those of the order in force";
}

TEST_F(SearchBaseSourceTest, addsWordsInAnyOrderUnlessTheyAreOff)
{
    const std::string plans = home_.makeFolder("harbour/plans");
    build({home_.path()});
    const SearchBaseSource source = this->source(disk_);
    const auto paths = [&](const std::string &query) {
        std::vector<std::string> found;
        for (const SearchBaseResultRef &row : source.search(query).results)
            found.push_back(row->path());
        return found;
    };
    EXPECT_THAT(paths("plans hårbour"), ElementsAre(plans));
    EXPECT_THAT(paths("/plans harbour"), ElementsAre(plans, "/plans harbour"))
        << "the path to go to stays last";
    preferences_.matchWordsInOrder.set(true);
    EXPECT_THAT(paths("plans hårbour"), IsEmpty());
}

TEST_F(SearchBaseSourceTest, waitsForADeadDiskAFewTimesAtMost)
{
    build({home_.makeFolder("x")});
    HangingLister dead;
    {
        const SearchBaseSource source = this->source(dead);
        for (int i = 0; i < 20; ++i)
            EXPECT_EQ(source.search(home_.path("x/")).selectedRow, 0);
        EXPECT_LE(dead.calls, 2);
        dead.answers.release(100);
        EXPECT_TRUE(QTest::qWaitFor([&] {
            return selected(source.search(home_.path("x/"))) == home_.path("x/");
        })) << "the server is back";
    }
}

TEST_F(SearchBaseSourceTest, tellsFoldersThatAreAwayFromNone)
{
    const SearchBaseSource source = this->source(disk_);
    build({});
    EXPECT_FALSE(source.state().hasLocations);
    const std::string away = home_.path("stick");
    build({away});
    EXPECT_TRUE(source.state().hasLocations);
    EXPECT_THAT(source.state().away, ElementsAre(away));
    build({away, home_.makeFolder("there")});
    EXPECT_THAT(source.state().away, ElementsAre(away));
    build({home_.path("there")});
    EXPECT_THAT(source.state().away, IsEmpty());
}

TEST_F(SearchBaseSourceTest, forgetsAFolderThatCouldNotBeOpenedBecauseItIsGone)
{
    const std::string gone = home_.makeFolder("root/gone");
    home_.makeFolder("root/gone/below");
    build({home_.path("root")});
    std::filesystem::remove_all(gone);
    FakeNotifications notifications;
    report(gone, notifications);
    EXPECT_THAT(base_.indexed(), ElementsAre(home_.path("root")));
    EXPECT_EQ(base_.score.score(gone), 0.0) << "the use does not count";
    EXPECT_THAT(notifications.shown, ElementsAre("“gone” is gone"));
    EXPECT_FALSE(hasWindow_);

    notifications.isAvailable = false;
    report(gone, notifications);
    EXPECT_TRUE(hasWindow_) << "a window says it where the desktop cannot";
}

TEST_F(SearchBaseSourceTest, saysOfAFolderWhoseDiskIsAwayThatItIsNotThereNow)
{
    const std::string photos = home_.makeFolder("stick/photos");
    build({home_.path("stick"), home_.makeFolder("there")});
    std::filesystem::rename(home_.path("stick"), home_.path("unplugged"));
    base_.searchBase.update(home_.path("stick"));
    FakeNotifications notifications;
    report(photos, notifications);
    EXPECT_THAT(notifications.shown, ElementsAre("“photos” is not there now"));
    EXPECT_EQ(base_.score.score(photos), 0.0) << "the use does not count";
    const auto rows = source(disk_).search("photos").results;
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows.front()->awayFolder(), home_.path("stick"));
}

TEST_F(SearchBaseSourceTest, keepsAndForgetsAFolderHoweverItIsWritten)
{
    SearchBaseSource source = this->source(disk_);
    const SearchBaseResult used("/used/", "/used/", {}, SearchBaseResultType::inFrontFinder);
    const SearchBaseResult same("/used", "/used", {}, SearchBaseResultType::standard);
    EXPECT_FALSE(source.canForget(used));
    base_.score.addRecentAccess(same);
    EXPECT_TRUE(source.canForget(used));
    source.keepOnTop(used, true);
    EXPECT_THAT(source.keptOnTop(), ElementsAre("/used"));

    base_.store.failWrites();
    source.keepOnTop(same, false);
    EXPECT_TRUE(source.state().isWriteRefused);
    EXPECT_THAT(source.keptOnTop(), ElementsAre("/used"));
    base_.store.failWrites(false);
    source.forget(used);
    EXPECT_FALSE(source.state().isWriteRefused);
    EXPECT_THAT(source.keptOnTop(), IsEmpty());
    EXPECT_EQ(base_.score.score("/used"), 0.0);
    EXPECT_FALSE(source.canForget(same));
}

TEST_F(SearchBaseSourceTest, offersThePlacesThatAreThere)
{
    places_.offered = {home_.path(), home_.path("gone"), home_.makeFolder("Documents")};
    std::vector<std::string> paths;
    for (const auto &row : source(disk_).places())
        paths.push_back(row->path());
    EXPECT_THAT(paths, ElementsAre(home_.path(), home_.path("Documents")));
}

} // namespace quillon
