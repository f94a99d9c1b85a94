#include "app/update/Feedback.h"

#include "app/update/FeedbackPage.h"
#include "prefs/PreferenceKeys.h"
#include "tests/support/FakeDefaultsStore.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/PlainWindowSystem.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <QLabel>

#include <gmock/gmock.h>

#include <filesystem>

namespace quillon {

using testing::AllOf;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

using namespace Qt::StringLiterals;

/// Stands wherever a user may have put words of their own.
const std::string SECRET = "Rosebud";

class FeedbackTest : public testing::Test
{
protected:
    FeedbackTest()
    {
        qputenv("HOME", QByteArray::fromStdString(home.path()));
        qputenv("XDG_CACHE_HOME", QByteArray::fromStdString(home.path("cache")));
        qputenv("XDG_CONFIG_HOME", QByteArray::fromStdString(home.path("config")));
    }
    Feedback feedbackFor(const std::string &address)
    {
        return {{.workspace = workspace, .defaults = defaults, .windowSystem = windowSystem},
                address,
                "1.3.9"};
    }
    static QStringList shownTexts()
    {
        QStringList texts;
        for (const QWidget *widget : QApplication::topLevelWidgets()) {
            if (!widget->isVisible())
                continue;
            for (const auto *label : widget->findChildren<QLabel *>())
                texts += label->text();
        }
        return texts;
    }

    const TemporaryFolder home;
    FakeDefaultsStore defaults;
    FakeWorkspace workspace;
    PlainWindowSystem windowSystem;
};

TEST_F(FeedbackTest, opensTheAddressOfTheBuild)
{
    feedbackFor("https://example.org/feedback").open();
    EXPECT_THAT(workspace.openedLinks, ElementsAre("https://example.org/feedback"));
    EXPECT_THAT(workspace.opened, IsEmpty());
    EXPECT_FALSE(std::filesystem::exists(home.path("cache")));

    workspace.hasBrowser = false;
    Feedback feedback = feedbackFor("https://example.org/feedback");
    feedback.open();
    EXPECT_TRUE(feedback.isWindowVisible());
    EXPECT_TRUE(shownTexts().join(u' ').contains(u"https://example.org/feedback"));
}

TEST_F(FeedbackTest, makesAPageWhenThereIsNoAddress)
{
    const std::string page = home.path("cache/quillon/feedback.html");
    feedbackFor({}).open();
    EXPECT_THAT(workspace.opened, ElementsAre(page));
    EXPECT_THAT(home.readFile("cache/quillon/feedback.html"),
                AllOf(HasSubstr("Quillon: 1.3.9"), HasSubstr("Nothing has been sent.")));
    using std::filesystem::perms;
    EXPECT_EQ(std::filesystem::status(page).permissions(), perms::owner_read | perms::owner_write);
    feedbackFor({}).open();
    EXPECT_THAT(workspace.opened, ElementsAre(page, page)) << "in place of the former";
}

TEST_F(FeedbackTest, writesThePageWhereAConfinedBrowserMayReadIt)
{
    workspace.folderApplication = "browser_browser.desktop";
    feedbackFor({}).open();
    EXPECT_THAT(workspace.opened, ElementsAre(home.path("Downloads/quillon-feedback.html")));
}

TEST_F(FeedbackTest, saysThatThePageCouldNotBeWritten)
{
    qputenv("XDG_CACHE_HOME", "/proc/none");
    qputenv("HOME", "/proc/none");
    Feedback feedback = feedbackFor({});
    feedback.open();
    EXPECT_TRUE(feedback.isWindowVisible());
    EXPECT_TRUE(shownTexts().contains(u"The page could not be written"_s));
    EXPECT_THAT(workspace.opened, IsEmpty());
}

TEST_F(FeedbackTest, tellsTheSettingsWithoutTheUsersWords)
{
    using Keys = PreferenceKeys;
    const std::string path = "/home/" + SECRET;
    defaults.set(Keys::BOOKMARKS,
                 {DefaultsDictionary{{path, {DefaultsData{path}}}, {"/home/other", {path}}}});
    defaults.set(Keys::EXCLUDE_FOLDER_PATTERNS, {DefaultsArray{{SECRET}, {SECRET}, {SECRET}}});
    defaults.set(Keys::INCLUDE_FILE_PATTERNS, {DefaultsArray{{SECRET}}});
    defaults.set(Keys::RECENT_ACCESS_SCORE_DATA, {DefaultsDictionary{{path, {std::int64_t{7}}}}});
    defaults.set(
        Keys::ACTIONS_LIST,
        {R"([{"flags": {"option": false, "shift": true, "command": false}, "actionType": )"
         R"({"key": "Execute Shell Command", "requiresTarget": true}, "actionTarget": {"key": ")" +
         path + "\"}}]"});
    defaults.set(Keys::OPEN_FINDER_BEHAVIOR, {std::string("existing")});
    defaults.set(Keys::QUICK_SEARCH_BEHAVIOR, {SECRET});
    defaults.set(Keys::FINDER_QUICK_SEARCH, {true});
    defaults.set(Keys::ENABLE_BETA_UPDATES, {SECRET});
    defaults.set(Keys::SHORTCUT, {"Ctrl+" + SECRET});
    defaults.set(Keys::FILE_MANAGER, {path + ".desktop"});
    qputenv("XDG_CURRENT_DESKTOP", QByteArray::fromStdString(path));

    const std::string report = FeedbackPage::report("1.3.9", defaults).toStdString();
    for (const char *line :
         {"Quillon: 1.3.9\n", "qln-bookmarks: 2\n", "exclude-folder-patterns: 3\n",
          "include-file-patterns: 1\n", "recent-access-score-data: 1\n", "1 Execute Shell Command",
          "open-finder-behavior: existing\n", "quick-search-behavior: something else\n",
          "finder-quick-search: true\n", "enable-beta-updates: false\n",
          "debug-log-fs-events: not set\n", "file-manager: something else\n",
          "ShowQLNShortcut: set", "desktop: unknown"})
        EXPECT_THAT(report, HasSubstr(line));
    EXPECT_THAT(report, Not(HasSubstr(SECRET)));
    EXPECT_THAT(report, Not(HasSubstr("/home")));
}

TEST_F(FeedbackTest, knowsFileManagersAndDesktopsByName)
{
    defaults.set(PreferenceKeys::FILE_MANAGER, {std::string("org.gnome.Nautilus.desktop")});
    qputenv("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
    const std::string report = FeedbackPage::report("1.3.9", defaults).toStdString();
    EXPECT_THAT(report,
                AllOf(HasSubstr("file-manager: nautilus\n"), HasSubstr("desktop: ubuntu:GNOME, ")));
}

TEST_F(FeedbackTest, survivesSettingsOfWrongTypes)
{
    for (const std::string_view key :
         {PreferenceKeys::BOOKMARKS, PreferenceKeys::ACTIONS_LIST, PreferenceKeys::FILE_MANAGER,
          PreferenceKeys::OPEN_FINDER_BEHAVIOR})
        defaults.set(key, {2.5});
    const std::string report = FeedbackPage::report("1.3.9", defaults).toStdString();
    EXPECT_THAT(report, AllOf(HasSubstr("qln-bookmarks: something else\n"),
                              HasSubstr("open-finder-behavior: something else\n")));
}

TEST_F(FeedbackTest, makesNoMarkupOfTheReport)
{
    EXPECT_THAT(FeedbackPage::html(u"<b>%1 & more"_s).toStdString(),
                HasSubstr("<pre>&lt;b&gt;%1 &amp; more</pre>"));
}

} // namespace

} // namespace quillon
