#include "app/DesktopSearch.h"

#include "actions/ActionModelFinder.h"
#include "actions/AppleScriptRunner.h"
#include "actions/FrontFinderSearch.h"
#include "app/panel/SearchBaseSource.h"
#include "base/InlineTaskQueue.h"
#include "platform/Places.h"
#include "prefs/KeptFolders.h"
#include "prefs/Preferences.h"
#include "tests/core/SearchBaseSupport.h"
#include "tests/support/FakeActionServices.h"
#include "tests/support/ManualTaskQueue.h"
#include "tests/support/MemoryCacheFile.h"
#include "tests/support/TimedTaskQueue.h"

#include <gmock/gmock.h>

namespace quillon {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace {

class NoPlaces : public Places
{
public:
    std::vector<std::string> folders() const override { return {}; }
    std::vector<std::string> mountedDisks() const override { return {}; }
};

/// One run of the program, over a disk and a kept index that may outlive it.
class ProgramRun : private SearchBaseBuildObserver
{
public:
    ProgramRun(const std::string &home, MemoryCacheFile &file) : base(file), home_(home)
    {
        base.includeFolders({home});
        builder.addObserver(*this);
    }
    ~ProgramRun() override { builder.removeObserver(*this); }

    /// Asks, and keeps the paths of the answer in answers.
    void ask(const std::string &text)
    {
        search.search(text, [this](const std::vector<RemoteControl::Row> &rows) {
            answers.emplace_back();
            for (const RemoteControl::Row &row : rows)
                answers.back().push_back(row.path.substr(home_.size() + 1));
        });
    }
    void build()
    {
        builder.start();
        while (builder.isBuilding()) {
            background.runAll();
            main.advance(0ms);
        }
    }

    SearchBaseOver<PosixFolderLister> base;
    ManualTaskQueue background;
    TimedTaskQueue main;
    SearchBaseBuilder builder{
        {.searchBase = base.searchBase,
         .searchBaseFinder = base.finder,
         .background = background,
         .main = main,
         .now = [this] { return std::chrono::steady_clock::time_point(main.now()); }}};
    Preferences preferences{base.store};
    FakeActionServices services;
    AppleScriptRunner scripts{services.fileManager};
    FrontFinderSearch front{{.appleScriptRunner = scripts,
                             .fileManager = services.fileManager,
                             .preferences = preferences,
                             .background = background,
                             .main = main}};
    NoPlaces places;
    KeptFolders kept{base.store};
    ActionModelFinder actions{base.store};
    InlineTaskQueue actionQueue;
    ActionRunner runner{services.services(), preferences, scripts, actionQueue, "/programs"};

private:
    void indexRestored() override { begunAtRestore = background.size(); }

    std::string home_;

public:
    InlineTaskQueue useQueue;
    SearchBaseSource source{{.searchBase = base.searchBase,
                             .finder = base.finder,
                             .builder = builder,
                             .frontFinderSearch = front,
                             .places = places,
                             .recentAccessScore = base.score,
                             .useQueue = useQueue,
                             .keptFolders = kept,
                             .preferences = preferences,
                             .disk = base.lister},
                            home_};
    DesktopSearch search{{.source = source,
                          .builder = builder,
                          .preferences = preferences,
                          .actions = actions,
                          .runner = runner,
                          .background = background,
                          .main = main},
                         home_};
    std::vector<std::vector<std::string>> answers;
    /// The searches that had begun when the index of the last run was there.
    std::size_t begunAtRestore = 0;
};

} // namespace

class DesktopSearchTest : public testing::Test
{
protected:
    TemporaryFolder home_;
    MemoryCacheFile file_;
};

TEST_F(DesktopSearchTest, findsWhatThePanelFindsInItsOrder)
{
    home_.makeFolder("harbour/x");
    home_.makeFolder("other/harbour");
    home_.makeFolder("Größe/plans");
    ProgramRun run(home_.path(), file_);
    run.build();
    const auto panel = [&](const std::string &text) {
        std::vector<std::string> paths;
        for (const SearchBaseResultRef &row : run.source.search(text).results)
            paths.push_back(row->path().substr(home_.path().size() + 1));
        return paths;
    };
    const auto found = [&](const std::string &text) {
        run.ask(text);
        run.background.runAll();
        return run.answers.back();
    };
    EXPECT_EQ(found("harbour"), panel("harbour"));
    EXPECT_EQ(found("harbour").size(), 3U);
    const auto byPath = found("harbour");
    run.preferences.matchOrder.select(Preferences::MatchOrder::names);
    EXPECT_NE(found("harbour"), byPath);
    EXPECT_EQ(found("harbour"), panel("harbour"));
    EXPECT_THAT(found("plans grosse"), ElementsAre("Größe/plans")) << "words in any order";
    run.preferences.matchWordsInOrder.set(true);
    EXPECT_THAT(found("plans grosse"), IsEmpty());
    EXPECT_THAT(found("~/harbour"), ElementsAre("harbour", "other/harbour", "harbour/x"))
        << "a path that could only be gone to is no folder that was found";
}

TEST_F(DesktopSearchTest, saysWhereAFolderIsAndWhetherItIsTheOneThatIsNamed)
{
    home_.makeFolder("other/Große Pläne");
    home_.makeFolder("other/Große Pläne B");
    ProgramRun run(home_.path(), file_);
    run.build();
    std::vector<std::string> named;
    run.search.search("grosse  plane", [&](const std::vector<RemoteControl::Row> &rows) {
        EXPECT_EQ(rows.size(), 2U);
        for (const RemoteControl::Row &row : rows)
            if (row.isNamed)
                named.push_back(row.name);
    });
    run.background.runAll();
    EXPECT_THAT(named, ElementsAre("Große Pläne"));

    struct
    {
        std::string path;
        std::string name;
        std::string place;
    } rows[] = {
        {home_.path("caf\xe9\n/b"), "b", "~/caf\uFFFD\uFFFD"},
        {home_.path("caf\xe9"), "caf\uFFFD", "~"},
        {home_.path("bundle.app/"), "bundle.app", "~"},
        {"/usr/share", "share", "/usr"},
        {"/usr", "usr", "/"},
        {"/", "/", ""},
    };
    for (const auto &row : rows) {
        const RemoteControl::Row described = run.search.describe(row.path);
        EXPECT_EQ(described.path, row.path);
        EXPECT_EQ(described.name, row.name) << row.path;
        EXPECT_EQ(described.place, row.place) << row.path;
    }
}

TEST_F(DesktopSearchTest, waitsForTheKeptIndex)
{
    home_.makeFolder("harbour");
    for (const bool isKept : {false, true}) {
        ProgramRun run(home_.path(), file_);
        run.builder.start();
        run.ask("harb");
        run.main.advance(2900ms);
        EXPECT_THAT(run.answers, IsEmpty());
        run.background.runNext(); // the build
        EXPECT_TRUE(run.background.isEmpty());
        run.main.advance(0ms);
        EXPECT_EQ(run.begunAtRestore, isKept ? 1U : 0U) << "the comparison is not waited for";
        run.background.runAll();
        EXPECT_THAT(run.answers, ElementsAre(ElementsAre("harbour")));
    }
}

TEST_F(DesktopSearchTest, answersFromWhatThereIsWhileALongBuildGoesOn)
{
    home_.makeFolder("harbour");
    ProgramRun run(home_.path(), file_);
    run.ask("harb");
    run.background.runAll();
    EXPECT_THAT(run.answers, ElementsAre(IsEmpty())) << "nothing is built, nothing is waited for";
    run.builder.start();
    ManualTaskQueue build;
    run.background.moveNextTo(build);
    run.ask("harb");
    run.main.advance(2s);
    run.ask("harbo");
    EXPECT_TRUE(run.background.isEmpty());
    run.main.advance(1s);
    EXPECT_EQ(run.background.size(), 2U);
    run.ask("harbou");
    EXPECT_EQ(run.background.size(), 3U) << "the build has had its time";
    run.background.runAll();
    EXPECT_EQ(run.answers.size(), 4U);
    build.runAll();
    run.main.advance(10s);
    run.background.runAll();
    EXPECT_EQ(run.answers.size(), 4U) << "each is answered once";
}

TEST_F(DesktopSearchTest, answersNothingAtOnceWhenItIsOffOrNothingIsTyped)
{
    home_.makeFolder("harbour");
    ProgramRun run(home_.path(), file_);
    run.builder.start();
    for (const char *text : {"", "h", "\U0001F4C1"})
        run.ask(text);
    run.preferences.hideFromDesktopSearch.set(true);
    run.ask("harb");
    EXPECT_THAT(run.answers, ElementsAre(IsEmpty(), IsEmpty(), IsEmpty(), IsEmpty()));
    EXPECT_EQ(run.background.size(), 1U) << "nothing but the build";
}

TEST_F(DesktopSearchTest, doesWhatThePanelDoesAndCountsIt)
{
    const std::string folder = home_.makeFolder("other/caf\xe9");
    ProgramRun run(home_.path(), file_);
    run.build();
    std::vector<std::string> words;
    for (const RemoteControl::RowAction &action : DesktopSearch::rowActions()) {
        words.push_back(action.words);
        run.search.run(action.id, folder);
    }
    EXPECT_THAT(words, ElementsAre("Show parent", "Copy path"));
    EXPECT_EQ(run.services.clipboard.text, folder);
    run.search.run("open", folder);
    EXPECT_THAT(run.services.fileManager.takeCalls(),
                ElementsAre("select " + folder + " in " + home_.path("other"), "new " + folder));
    run.search.run("rebuild", folder); // That is no action on a folder.
    EXPECT_THAT(run.base.score.snapshot()->counts, UnorderedElementsAre(testing::Pair(folder, 3)));

    run.actions.saveActions({{.flags = {},
                              .actionType = ActionType::copyPathToClipboard,
                              .actionTarget = ActionTarget::selectedRow}});
    run.search.run("open", home_.path("other"));
    EXPECT_EQ(run.services.clipboard.text, home_.path("other")) << "as plain Return does";
    EXPECT_THAT(run.services.fileManager.takeCalls(), IsEmpty());
}

TEST_F(DesktopSearchTest, tellsWhetherAnItemWasOpened)
{
    const std::string folder = home_.makeFolder("folder");
    ProgramRun run(home_.path(), file_);
    std::vector<std::string> faults;
    const auto open = [&] {
        run.search.open(folder, [&](const std::string &fault) { faults.push_back(fault); });
    };
    open();
    run.services.folders.add(folder);
    run.services.fileManager.isWorking = false;
    open();
    run.actions.saveActions({{.flags = {.shift = true},
                              .actionType = ActionType::copyPathToClipboard,
                              .actionTarget = ActionTarget::selectedRow}});
    open();
    EXPECT_THAT(faults, ElementsAre("", "the file manager did not open it",
                                    "no action is bound to Return"));
}

} // namespace quillon
