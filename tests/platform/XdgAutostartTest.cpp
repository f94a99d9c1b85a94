#include "platform/linux/applications/XdgAutostart.h"

#include "platform/linux/bus/GioPointers.h"
#include "tests/support/TemporaryFolder.h"

#include <gio/gdesktopappinfo.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <ostream>
#include <string>

#include <sys/wait.h>

namespace quillon {

namespace {

namespace fs = std::filesystem;

/// A user's folder of entries and one of the system's. Neither exists at the start.
class XdgAutostartTest : public testing::Test
{
protected:
    static constexpr const char *OWN = "home/autostart/org.quillon.Quillon.desktop";
    static constexpr const char *SYSTEM = "etc/autostart/org.quillon.Quillon.desktop";

    static std::string working(const std::string &more = {})
    {
        return "[Desktop Entry]\nType=Application\nName=Quillon\nExec=true --background\n" + more;
    }

    TemporaryFolder folder;
    XdgAutostart autostart{"/usr/bin/true",
                           {folder.path("home/autostart"), folder.path("etc/autostart")}};
};

/// Starts what the entry says, as a desktop does, and waits for its end.
bool runEntry(const std::string &path)
{
    const ObjectRef<GDesktopAppInfo> entry(g_desktop_app_info_new_from_filename(path.c_str()));
    const auto wait = [](GDesktopAppInfo *, GPid child, gpointer) { waitpid(child, nullptr, 0); };
    return entry && g_desktop_app_info_launch_uris_as_manager(entry.get(), nullptr, nullptr,
                                                              G_SPAWN_DO_NOT_REAP_CHILD, nullptr,
                                                              nullptr, wait, nullptr, nullptr);
}

} // namespace

TEST_F(XdgAutostartTest, startsTheProgramInTheBackgroundWhateverItsPath)
{
    const std::string program =
        folder.writeFile("a \"b\" $c `d` \\e\\n 'g' ü;/quillon",
                         "#!/bin/sh\nprintf '%s\\n' \"$@\" > \"$(dirname \"$0\")/arguments\"\n");
    fs::permissions(program, fs::perms::owner_all);
    XdgAutostart strange(program, {folder.path("home/autostart")});
    EXPECT_FALSE(strange.isEnabled());
    ASSERT_TRUE(strange.setEnabled(true));
    EXPECT_TRUE(strange.isEnabled());

    ASSERT_TRUE(runEntry(folder.path(OWN)));
    EXPECT_EQ(folder.readFile("a \"b\" $c `d` \\e\\n 'g' ü;/arguments"), "--background\n");

    fs::remove(program);
    EXPECT_FALSE(strange.isEnabled()) << "nothing is started once the program is gone";
}

TEST_F(XdgAutostartTest, leavesNothingBehindWhenDisabled)
{
    ASSERT_TRUE(autostart.setEnabled(true));
    ASSERT_TRUE(autostart.setEnabled(false));
    EXPECT_FALSE(autostart.isEnabled());
    EXPECT_TRUE(fs::is_empty(folder.path("home/autostart")));
    EXPECT_TRUE(autostart.setEnabled(false));
}

TEST_F(XdgAutostartTest, hidesAnEntryOfTheSystemAndLeavesItAlone)
{
    folder.writeFile(SYSTEM, working());
    EXPECT_TRUE(autostart.isEnabled());
    ASSERT_TRUE(autostart.setEnabled(false));
    EXPECT_FALSE(autostart.isEnabled());
    ASSERT_TRUE(autostart.setEnabled(true));
    EXPECT_TRUE(autostart.isEnabled());
    EXPECT_EQ(folder.readFile(SYSTEM), working());

    // A link to it belongs to the user, but what it leads to does not.
    fs::remove(folder.path(OWN));
    fs::create_symlink(folder.path(SYSTEM), folder.path(OWN));
    ASSERT_TRUE(autostart.setEnabled(false));
    EXPECT_FALSE(autostart.isEnabled());
    EXPECT_EQ(folder.readFile(SYSTEM), working());
}

TEST_F(XdgAutostartTest, keepsWhatWasThereWhenNothingCanBeWritten)
{
    folder.writeFile(SYSTEM, working());
    folder.writeFile("home/autostart", "a file where the folder should be");
    EXPECT_FALSE(autostart.setEnabled(false));
    EXPECT_TRUE(autostart.isEnabled());

    fs::remove(folder.path(SYSTEM));
    EXPECT_FALSE(autostart.setEnabled(true));
    EXPECT_FALSE(autostart.isEnabled());
}

struct HandMadeEntry
{
    const char *name;
    std::string more;
    bool isEnabled;
};

std::ostream &operator<<(std::ostream &stream, const HandMadeEntry &entry)
{
    return stream << entry.name;
}

class HandMadeEntryTest : public XdgAutostartTest, public testing::WithParamInterface<HandMadeEntry>
{};

TEST_P(HandMadeEntryTest, countsAsTheDesktopTakesIt)
{
    folder.writeFile(SYSTEM, working());
    folder.writeFile(OWN, working(GetParam().more));
    EXPECT_EQ(autostart.isEnabled(), GetParam().isEnabled);

    ASSERT_TRUE(autostart.setEnabled(!GetParam().isEnabled));
    EXPECT_EQ(autostart.isEnabled(), !GetParam().isEnabled);
}

INSTANTIATE_TEST_SUITE_P(
    Entries, HandMadeEntryTest,
    testing::Values(HandMadeEntry{"plain", "", true},
                    HandMadeEntry{"hidden", "Hidden=true\n", false},
                    HandMadeEntry{"switchedOn", "X-GNOME-Autostart-enabled=true\n", true},
                    HandMadeEntry{"switchedOff", "X-GNOME-Autostart-enabled=false\n", false},
                    HandMadeEntry{"withoutItsProgram", "TryExec=/nowhere/quillon\n", false},
                    HandMadeEntry{"forAnotherDesktop", "OnlyShowIn=Elsewhere;\n", false},
                    HandMadeEntry{"noEntryAtAll", "a line that is none\n", false}),
    [](const auto &row) { return std::string(row.param.name); });

} // namespace quillon
