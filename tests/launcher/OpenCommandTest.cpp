#include "launcher/OpenCommand.h"

#include "launcher/ApplicationNames.h"
#include "tests/support/CapturedOutput.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <ostream>

namespace quillon {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

using Texts = std::vector<std::string>;

std::vector<Application> desktop()
{
    return {
        {.id = "caja.desktop", .name = "Caja", .executable = "caja", .isShown = false},
        {.id = "console.desktop", .name = "Console", .isShown = false, .isTerminalEmulator = true},
        {.id = "debian-xterm.desktop",
         .name = "XTerm",
         .genericName = "Terminal",
         .executable = "xterm",
         .isTerminalEmulator = true},
        {.id = "gimp.desktop",
         .name = "Éditeur GIMP",
         .untranslatedName = "GIMP Editor",
         .genericName = "Image Editor",
         .executable = "gimp-2.10"},
        {.id = "hidden-gimp.desktop", .name = "gimp", .executable = "gimp", .isShown = false},
        {.id = "nemo.desktop", .name = "Files", .executable = "nemo"},
        {.id = "org.example.Nautilus.desktop", .name = "Files", .executable = "nautilus"},
        {.id = "org.example.Sheets.desktop",
         .name = "Tabellen",
         .untranslatedName = "Tables",
         .executable = "sheets-7"},
        {.id = "people.desktop", .name = "People", .executable = "tables"},
        {.id = "planner.desktop", .name = "Planner", .executable = "sheets"},
        {.id = "viewer.desktop", .name = "nemo viewer", .executable = "viewer"},
    };
}

/// A desktop that records what it is asked to start.
class FakeApplicationLauncher final : public ApplicationLauncher
{
public:
    std::vector<Application> installed = desktop();
    /// The command lines that can be run.
    Texts programs;
    bool isWorking = true;
    Texts started;

    std::vector<Application> applications() const override { return installed; }
    bool launch(const std::string &id, const std::string &path) override
    {
        started.push_back(id + " " + path);
        return isWorking;
    }
    bool run(const std::string &commandLine, const std::string &folder) override
    {
        started.push_back(commandLine + " in " + folder);
        return std::ranges::find(programs, commandLine) != programs.end();
    }
};

} // namespace

struct NameRow
{
    const char *name;
    const char *typed;
    const char *id;

    friend std::ostream &operator<<(std::ostream &out, const NameRow &row)
    {
        return out << row.name;
    }
};

class ApplicationNames : public testing::TestWithParam<NameRow>
{};

TEST_P(ApplicationNames, findOneApplication)
{
    const auto applications = desktop();
    const Application *found = findApplication(GetParam().typed, applications);
    EXPECT_EQ(found ? found->id : "", GetParam().id);
}

INSTANTIATE_TEST_SUITE_P(
    Rows, ApplicationNames,
    testing::Values(NameRow{"id", "gimp", "gimp.desktop"},
                    NameRow{"idWithItsEnd", "GIMP.desktop", "gimp.desktop"},
                    NameRow{"idBeforeAnyName", "nemo", "nemo.desktop"},
                    NameRow{"nameInAnyCase", "éDITEUR gimp", "gimp.desktop"},
                    NameRow{"untranslatedName", "gimp editor", "gimp.desktop"},
                    NameRow{"program", "gimp-2.10", "gimp.desktop"},
                    NameRow{"untranslatedNameBeforeProgram", "tables",
                            "org.example.Sheets.desktop"},
                    NameRow{"programBeforeTheLastPartOfTheId", "sheets", "planner.desktop"},
                    NameRow{"lastPartOfTheId", "Nautilus", "org.example.Nautilus.desktop"},
                    NameRow{"theFirstOfSeveral", "files", "nemo.desktop"},
                    NameRow{"genericName", "image editor", "gimp.desktop"},
                    NameRow{"outsideTheMenus", "caja", "caja.desktop"},
                    NameRow{"notAPart", "edit", ""}, NameRow{"nothing", "", ""}),
    [](const auto &test) { return std::string(test.param.name); });

TEST(NearestNames, areThoseTypedWrongOrInPart)
{
    const auto applications = desktop();
    EXPECT_THAT(nearestNames("nautlius", applications), ElementsAre("Files"));
    EXPECT_THAT(nearestNames("xtrem", applications), IsEmpty()) << "two of five letters";
    EXPECT_THAT(nearestNames("xtermm", applications), ElementsAre("XTerm"));
    EXPECT_THAT(nearestNames("nemo v", applications), ElementsAre("Files", "nemo viewer"));
    EXPECT_THAT(nearestNames("cajaa", applications), IsEmpty()) << "in no menu";
    EXPECT_THAT(nearestNames("", applications), IsEmpty());
}

TEST(NearestNames, areThreeAtMostTheNearestFirst)
{
    std::vector<Application> applications;
    for (const char *name : {"Terminus", "Terminals", "Termini", "Terminal", "R"})
        applications.push_back({.id = std::string(name) + ".desktop", .name = name});
    EXPECT_THAT(nearestNames("terminl", applications),
                ElementsAre("Terminal", "Termini", "Terminals"));
}

class Open : public testing::Test
{
protected:
    Open() { workspace_.files = {file_}; }

    int run(const Texts &arguments) { return command_.run(arguments); }

    const TemporaryFolder tree_;
    const std::string folder_ = tree_.makeFolder("a b");
    const std::string file_ = tree_.writeFile("a b/notes\n.txt");
    FakeApplicationLauncher launcher_;
    FakeWorkspace workspace_;
    CapturedOutput diagnostics_;
    OpenCommand command_{launcher_, workspace_, diagnostics_.stream()};
};

TEST_F(Open, launchesTheApplicationOrTheDefaultOne)
{
    EXPECT_EQ(run({"-a", "Files", folder_}), 0);
    workspace_.folderApplication = "org.example.Nautilus.desktop";
    EXPECT_EQ(run({"-a", "Files", folder_}), 0);
    EXPECT_THAT(launcher_.started,
                ElementsAre("nemo.desktop " + folder_, "org.example.Nautilus.desktop " + folder_))
        << "of two with one name the default one";
    EXPECT_EQ(run({file_}), 0);
    EXPECT_THAT(workspace_.opened, ElementsAre(file_));
    EXPECT_EQ(diagnostics_.take(), "");
}

TEST_F(Open, saysWhatIsWrong)
{
    EXPECT_EQ(run({"-a", "Filess", folder_}), 1);
    EXPECT_EQ(diagnostics_.take(),
              "open: there is no application \"Filess\"; near it: \"Files\"\n");
    EXPECT_EQ(run({"-a", "qwzx", folder_}), 1);
    EXPECT_EQ(diagnostics_.take(), "open: there is no application \"qwzx\"\n");
    EXPECT_EQ(run({"-a", "gimp", tree_.path("none")}), 1);
    EXPECT_EQ(diagnostics_.take(), "open: there is no " + tree_.path("none") + "\n");
    for (const Texts &wrong : {Texts{}, Texts{"-a"}, Texts{"-a", "gimp"}, Texts{"--help"},
                               Texts{folder_, folder_}, Texts{"-b", "gimp", folder_}}) {
        EXPECT_EQ(run(wrong), 2);
        EXPECT_THAT(diagnostics_.take(), testing::StartsWith("open: usage: "));
    }
    EXPECT_THAT(launcher_.started, IsEmpty());
    launcher_.isWorking = false;
    EXPECT_EQ(run({"-a", "gimp", folder_}), 1);
    EXPECT_EQ(diagnostics_.take(), "open: gimp.desktop does not start\n");
}

TEST_F(Open, findsTheUsersTerminal)
{
    ASSERT_EQ(setenv("TERMINAL", "my-term --new", 1), 0);
    const std::string at = " in " + folder_;
    EXPECT_EQ(run({"-a", "Terminal", file_}), 0) << "in the folder of the file";
    EXPECT_THAT(launcher_.started,
                ElementsAre("xdg-terminal-exec" + at, "my-term --new" + at,
                            "x-terminal-emulator" + at, "debian-xterm.desktop " + file_));

    ASSERT_EQ(setenv("TERMINAL", "", 1), 0);
    launcher_.started.clear();
    launcher_.programs = {"x-terminal-emulator"};
    EXPECT_EQ(run({"-a", "Terminal", folder_}), 0);
    EXPECT_THAT(launcher_.started,
                ElementsAre("xdg-terminal-exec" + at, "x-terminal-emulator" + at));

    launcher_.started.clear();
    launcher_.installed.push_back({.id = "org.example.Terminal.desktop", .name = "Console"});
    EXPECT_EQ(run({"-a", "Terminal", folder_}), 0);
    EXPECT_THAT(launcher_.started, ElementsAre("org.example.Terminal.desktop " + folder_));
    unsetenv("TERMINAL");
}

} // namespace quillon
