#include "actions/ActionRunner.h"

#include "prefs/Preferences.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeActionServices.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/ManualTaskQueue.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <ostream>

namespace quillon {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

using Texts = std::vector<std::string>;

constexpr const char *FILE_MANAGER = "fake.desktop";

SearchBaseResultRef row(const std::string &path,
                        SearchBaseResultType type = SearchBaseResultType::standard)
{
    return std::make_shared<SearchBaseResult>("a text", path, std::vector<TextRange>{}, type);
}

} // namespace

class Actions : public testing::Test
{
protected:
    void run(const ActionType &type, const SearchBaseResultRef &result,
             const std::string &target = "the selected row")
    {
        runner_.runAction({.flags = {}, .actionType = type, .actionTarget = ActionTarget(target)},
                          result, [this](const auto &failure) {
                              ended_.push_back(failure ? std::optional(failure->reason)
                                                       : std::nullopt);
                          });
        queue_.runAll();
    }

    /// The reasons why actions failed, or nothing for each action that was carried out.
    std::vector<std::optional<ActionFailure::Reason>> ended_;
    FakeActionServices fakes_;
    FakeDefaultsStore store_;
    Preferences preferences_{store_};
    AppleScriptRunner scripts_{fakes_.fileManager};
    ManualTaskQueue queue_;
    CapturedOutput output_;
    CapturedOutput diagnostics_;
    ActionRunner runner_{fakes_.services(),  preferences_,
                         scripts_,           queue_,
                         "/libexec/quillon", {output_.stream(), diagnostics_.stream()}};
};

/// What happens to an item: a call of the file manager opens it or shows it, or an application
/// opens it.
struct OpenRow
{
    const char *name;
    const char *kind;
    const char *path;
    Texts calls;
    Texts opened;
    const char *openBehavior = "new";
    const char *folderApplication = FILE_MANAGER;
    const char *quickSearch = "open";
    SearchBaseResultType type = SearchBaseResultType::standard;

    friend std::ostream &operator<<(std::ostream &out, const OpenRow &row)
    {
        return out << row.name;
    }
};

class OpenActions : public Actions, public testing::WithParamInterface<OpenRow>
{};

TEST_P(OpenActions, reachTheFileManagerOrTheDefaultApplication)
{
    const OpenRow &expected = GetParam();
    fakes_.workspace.files = {"/file"};
    fakes_.workspace.links = {{"/link", "/real"}, {"/link/in", "/far/in"}};
    fakes_.workspace.folderApplication = expected.folderApplication;
    store_.set("open-finder-behavior", {std::string(expected.openBehavior)});
    store_.set("quick-search-behavior", {std::string(expected.quickSearch)});
    run(ActionType(expected.kind, false), row(expected.path, expected.type));
    EXPECT_EQ(fakes_.fileManager.takeCalls(), expected.calls);
    EXPECT_EQ(fakes_.workspace.opened, expected.opened);
    EXPECT_THAT(fakes_.clipboard.text, IsEmpty());
    EXPECT_THAT(fakes_.processRunner.commands, IsEmpty());
    EXPECT_THAT(ended_, ElementsAre(std::nullopt));
    // What is selected in its folder is shown and not opened.
    const bool isOpened = !expected.opened.empty() ||
                          std::ranges::any_of(expected.calls, [](const std::string &call) {
                              return !call.starts_with("select");
                          });
    EXPECT_EQ(fakes_.recentItems.added, Texts(isOpened ? 1 : 0, expected.path));
}

constexpr const char *OPEN = "Open in Default App";
constexpr const char *SHOW = "Show in Finder";
constexpr const char *PARENT = "Show Parent in Finder";
constexpr auto FRONT = SearchBaseResultType::inFrontFinder;

INSTANTIATE_TEST_SUITE_P(
    Rows, OpenActions,
    testing::Values(
        OpenRow{"openAFolder", OPEN, "/link", {"new /real"}, {}},
        OpenRow{"openAFolderInTheFrontWindow", OPEN, "/link", {"front /real"}, {}, "existing"},
        OpenRow{"openAFile", OPEN, "/file", {}, {"/file"}},
        OpenRow{"anotherProgramOpensFolders", OPEN, "/link", {}, {"/link"}, "new", "other.desktop"},
        OpenRow{"anotherFileManagerOpensFolders",
                OPEN,
                "/link",
                {"new /real"},
                {},
                "new",
                "files.desktop"},
        OpenRow{"nothingOpensFolders", OPEN, "/link", {}, {"/link"}, "new", ""},
        OpenRow{"typedPathsOpenLikeOthers",
                SHOW,
                "/link",
                {"new /real"},
                {},
                "new",
                FILE_MANAGER,
                "select",
                SearchBaseResultType::goToPath},
        OpenRow{"show", SHOW, "/link", {"new /real"}, {}},
        OpenRow{"showAFile", SHOW, "/file", {"select /file in /"}, {}},
        OpenRow{"showAFileInTheFrontWindow", SHOW, "/file", {"select /file in /"}, {}, "existing"},
        OpenRow{"showInTheFrontWindow", SHOW, "/link", {"front /real"}, {}, "existing"},
        OpenRow{"parent", PARENT, "/a/b", {"select /a/b in /a"}, {}},
        OpenRow{"parentThroughLinks", PARENT, "/link/in", {"select /far/in in /real"}, {}},
        OpenRow{"parentOfAPathWithSlashes", PARENT, "/a//b//", {"select /a//b// in /a"}, {}},
        OpenRow{"parentAtTheTop", PARENT, "/b", {"select /b in /"}, {}},
        OpenRow{"parentOfTheRoot", PARENT, "/", {"select / in /"}, {}},
        OpenRow{"frontRowsOpen",
                "Copy Path to Clipboard",
                "/file",
                {},
                {"/file"},
                "new",
                "",
                "open",
                FRONT},
        OpenRow{"frontRowsAreSelected",
                "Open Application",
                "/a/b",
                {"select /a/b in /a"},
                {},
                "new",
                "",
                "select",
                FRONT},
        OpenRow{"unknownKind", "Sing", "/link", {}, {}}),
    [](const auto &test) { return std::string(test.param.name); });

TEST_F(Actions, doNothingWithWhatIsNotThereNow)
{
    std::vector<ActionFailure> failures;
    runner_.onFailure([&](const ActionFailure &failure) { failures.push_back(failure); });
    const auto away = std::make_shared<SearchBaseResult>(
        "/disk/a", "/disk/a", std::vector<TextRange>{}, SearchBaseResultType::standard, "/disk");
    for (const ActionType &type : {ActionType::openInDefaultApp, ActionType::openApplication,
                                   ActionType::showParentInFinder, ActionType::executeShellCommand})
        run(type, away, "paint");
    EXPECT_THAT(fakes_.fileManager.takeCalls(), IsEmpty());
    EXPECT_THAT(fakes_.processRunner.commands, IsEmpty());
    EXPECT_THAT(failures, SizeIs(4));
    EXPECT_TRUE(std::ranges::all_of(failures, [](const ActionFailure &failure) {
        return failure.reason == ActionFailure::Reason::itemAway;
    }));
    run(ActionType::copyPathToClipboard, away);
    EXPECT_EQ(fakes_.clipboard.text, "/disk/a");

    fakes_.folders.add("/disk/a");
    run(ActionType::openInDefaultApp, away);
    EXPECT_THAT(fakes_.fileManager.takeCalls(), ElementsAre("new /disk/a")) << "it is back";
    EXPECT_THAT(failures, SizeIs(4));
}

TEST_F(Actions, enterAsRecentWhatAnApplicationHasOpenedUnlessTheUserWantsNone)
{
    run(ActionType::openApplication, row("/a"), "paint");
    EXPECT_THAT(fakes_.recentItems.added, IsEmpty()) << "it may still fail";
    fakes_.processRunner.running.front()({"", "", true});
    EXPECT_THAT(fakes_.recentItems.added, ElementsAre("/a"));
    run(ActionType::openApplication, row("/a"), "paint");
    fakes_.processRunner.running.back()({"", "", false});
    run(ActionType::executeShellCommand, row("/a"), "/bin/true");
    fakes_.processRunner.running.back()({"", "", true});
    fakes_.fileManager.isWorking = false;
    run(ActionType::openInDefaultApp, row("/a"));
    fakes_.fileManager.isWorking = true;
    preferences_.hideFromRecentFiles.set(true);
    run(ActionType::openInDefaultApp, row("/a"));
    EXPECT_THAT(fakes_.recentItems.added, ElementsAre("/a"));
}

TEST_F(Actions, openFilesEvenWithTheFileManagerAndFoldersEvenWithoutOne)
{
    fakes_.workspace.files = {"/letters.zip"};
    fakes_.workspace.fileApplication = FILE_MANAGER;
    run(ActionType::openInDefaultApp, row("/letters.zip"));
    EXPECT_THAT(fakes_.workspace.opened, ElementsAre("/letters.zip"));
    EXPECT_THAT(fakes_.fileManager.takeCalls(), IsEmpty());

    fakes_.workspace.folderApplication = fakes_.fileManager.desktopId = "";
    run(ActionType::openInDefaultApp, row("/a"));
    EXPECT_THAT(fakes_.workspace.opened, SizeIs(1));
    EXPECT_THAT(fakes_.fileManager.takeCalls(), ElementsAre("new /a"));
}

/// The failure of an action when nothing works.
struct FailureRow
{
    using Reason = ActionFailure::Reason;

    const char *name;
    const char *kind;
    const char *path;
    Reason reason;
    std::string target = {};
    const char *openBehavior = "new";
    const char *fileManager = FILE_MANAGER;

    friend std::ostream &operator<<(std::ostream &out, const FailureRow &row)
    {
        return out << row.name;
    }
};

class FailingActions : public Actions, public testing::WithParamInterface<FailureRow>
{};

TEST_P(FailingActions, sayWhy)
{
    const FailureRow &expected = GetParam();
    fakes_.fileManager.isWorking = fakes_.workspace.hasApplications = false;
    fakes_.fileManager.desktopId = expected.fileManager;
    fakes_.workspace.folderApplication = expected.fileManager;
    fakes_.workspace.files = {"/file", "/gone"};
    for (const char *path : {"/folder", "/file"})
        fakes_.folders.add(path);
    fakes_.folders.unanswered = {"/silent"};
    store_.set("open-finder-behavior", {std::string(expected.openBehavior)});
    std::vector<ActionFailure> failures;
    runner_.onFailure([&failures](const ActionFailure &failure) { failures.push_back(failure); });

    const SearchBaseResultRef result = row(expected.path);
    run(ActionType(expected.kind, false), result, expected.target);
    for (const auto &ended : fakes_.processRunner.running)
        ended({.standardOutput = "", .standardError = "", .isSuccess = false});
    ASSERT_THAT(failures, SizeIs(1));
    EXPECT_EQ(failures.front().reason, expected.reason);
    EXPECT_EQ(failures.front().result, result);
    EXPECT_EQ(failures.front().target, expected.target);
    EXPECT_THAT(ended_, ElementsAre(expected.reason));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, FailingActions,
    testing::Values(
        FailureRow{"goneWhenOpened", OPEN, "/gone", FailureRow::Reason::itemGone},
        FailureRow{"goneWhenShown", SHOW, "/gone", FailureRow::Reason::itemGone, "", "existing"},
        FailureRow{"goneWhenSelected", PARENT, "/gone", FailureRow::Reason::itemGone},
        FailureRow{"silentDisk", OPEN, "/silent", FailureRow::Reason::itemUnreachable},
        FailureRow{"fileManagerFails", OPEN, "/folder", FailureRow::Reason::fileManagerFailed},
        FailureRow{"frontWindowFails", SHOW, "/folder", FailureRow::Reason::fileManagerFailed, "",
                   "existing"},
        FailureRow{"noFileManager", OPEN, "/folder", FailureRow::Reason::noFileManager, "", "new",
                   ""},
        FailureRow{"noFileManagerForAFile", SHOW, "/file", FailureRow::Reason::noFileManager, "",
                   "new", ""},
        FailureRow{"noApplicationForAFile", OPEN, "/file",
                   FailureRow::Reason::noDefaultApplication},
        FailureRow{"noSuchApplication", "Open Application", "/folder",
                   FailureRow::Reason::applicationFailed, "no such program"},
        FailureRow{"applicationForAGoneFolder", "Open Application", "/gone",
                   FailureRow::Reason::itemGone}),
    [](const auto &test) { return std::string(test.param.name); });

TEST_F(Actions, copyThePathAsItStands)
{
    const std::string path = "/tmp/a b\n\"$HOME\" \xff";
    fakes_.workspace.links = {{path, "/elsewhere"}};
    runner_.runAction({.flags = {},
                       .actionType = ActionType::copyPathToClipboard,
                       .actionTarget = ActionTarget::selectedRow},
                      row(path));
    EXPECT_TRUE(queue_.isEmpty()) << "on the clipboard before anything else can happen";
    EXPECT_EQ(fakes_.clipboard.text, path);
}

struct CommandRow
{
    const char *name;
    const char *application;
    const char *path;
    const char *command;

    friend std::ostream &operator<<(std::ostream &out, const CommandRow &row)
    {
        return out << row.name;
    }
};

class OpenApplicationCommands : public Actions, public testing::WithParamInterface<CommandRow>
{};

TEST_P(OpenApplicationCommands, escapeQuotesOfThePathAlone)
{
    run(ActionType::openApplication, row(GetParam().path), GetParam().application);
    ASSERT_THAT(fakes_.processRunner.commands, SizeIs(1));
    const ProcessRunner::Command &command = fakes_.processRunner.commands.front();
    EXPECT_EQ(command.executable, "/bin/bash");
    EXPECT_THAT(command.arguments, ElementsAre("-c", GetParam().command));
    EXPECT_EQ(command.firstOnPath, "/libexec/quillon");
    EXPECT_THAT(ended_, IsEmpty()) << "it may not find the application";
    fakes_.processRunner.running.front()({.standardOutput = "some", .standardError = "text"});
    EXPECT_EQ(output_.take() + diagnostics_.take(), "");
    EXPECT_THAT(ended_, ElementsAre(std::nullopt));
}

INSTANTIATE_TEST_SUITE_P(
    Rows, OpenApplicationCommands,
    testing::Values(
        CommandRow{"plain", "Terminal", "/tmp/a b", R"(open -a "Terminal" "/tmp/a b")"},
        CommandRow{"quotes", "x", R"(/a "b" 'c')", R"(open -a "x" "/a \"b\" 'c'")"},
        CommandRow{"theShellsOwn", "x", R"(/$HOME/`id`/\)", R"(open -a "x" "/$HOME/`id`/\")"},
        CommandRow{"theTargetAsTyped", R"(a "b")", "/p\n\xff", "open -a \"a \"b\"\" \"/p\n\xff\""}),
    [](const auto &test) { return std::string(test.param.name); });

TEST_F(Actions, runTheUsersExecutableAndTellWhatItSaid)
{
    const std::string path = "/a \"b\" $c\n\xff";
    run(ActionType::executeShellCommand, row(path), "/home/u/my script");
    ASSERT_THAT(fakes_.processRunner.commands, SizeIs(1));
    const ProcessRunner::Command &command = fakes_.processRunner.commands.front();
    EXPECT_EQ(command.executable, "/home/u/my script");
    EXPECT_THAT(command.arguments, ElementsAre(path));
    EXPECT_EQ(command.firstOnPath, "");
    EXPECT_EQ(output_.take(), "") << "it still runs";
    EXPECT_THAT(ended_, ElementsAre(std::nullopt)) << "nobody waits for its end";

    fakes_.processRunner.running.front()(
        {.standardOutput = "it's \"b\" \\ c\n\r\té", .standardError = ""});
    EXPECT_EQ(output_.take(), "Shell script result: (\"it's \\\"b\\\" \\\\ c\\n\\r\\té\", \"\")\n");
    EXPECT_EQ(diagnostics_.take(), "");
}

TEST_F(Actions, goOnWhileAnExecutableRuns)
{
    run(ActionType::executeShellCommand, row("/a"), "/bin/first");
    run(ActionType::executeShellCommand, row("/a"), "/bin/second");
    ASSERT_THAT(fakes_.processRunner.running, SizeIs(2));
    fakes_.processRunner.running[1]({.standardOutput = "", .standardError = "2"});
    fakes_.processRunner.running[0]({.standardOutput = "1", .standardError = ""});
    EXPECT_EQ(output_.take(), "Shell script result: (\"\", \"2\")\n"
                              "Shell script result: (\"1\", \"\")\n");
}

TEST_F(Actions, sayInOneLineThatAProgramDoesNotStart)
{
    std::vector<ActionFailure::Reason> reasons;
    runner_.onFailure(
        [&reasons](const ActionFailure &failure) { reasons.push_back(failure.reason); });
    fakes_.folders.add("/a");
    fakes_.processRunner.failure = "no \"/a\nb\" here";
    run(ActionType::executeShellCommand, row("/a"), "/a\nb");
    EXPECT_EQ(diagnostics_.take(), "quillon: no \\\"/a\\nb\\\" here\n");
    fakes_.processRunner.failure = "no shell";
    run(ActionType::openApplication, row("/a"), "gimp");
    EXPECT_EQ(diagnostics_.take(), "quillon: no shell\n");
    EXPECT_THAT(reasons, ElementsAre(ActionFailure::Reason::executableFailed,
                                     ActionFailure::Reason::applicationFailed));
    EXPECT_EQ(output_.take(), "");
}

} // namespace quillon
