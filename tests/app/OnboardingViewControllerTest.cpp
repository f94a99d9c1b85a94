#include "app/setup/OnboardingViewController.h"

#include "app/widgets/SetupWindow.h"
#include "app/widgets/WriteFault.h"
#include "indexing/SearchBaseFinder.h"
#include "platform/Autostart.h"
#include "platform/Clipboard.h"
#include "platform/Places.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "platform/linux/session/QtTaskQueues.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "shortcut/QLNShortcutBinder.h"
#include "shortcut/QLNShortcutMonitor.h"
#include "tests/support/FakeDefaultsChanges.h"
#include "tests/support/FakeFolderPicker.h"
#include "tests/support/FakeHotKey.h"
#include "tests/support/Mnemonics.h"
#include "tests/support/Patience.h"
#include "tests/support/PlainWindowSystem.h"
#include "tests/support/SpokenLanguage.h"
#include "tests/support/TemporaryFolder.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QTest>

#include <gmock/gmock.h>

#include <algorithm>
#include <future>

namespace quillon {

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class TextClipboard : public Clipboard
{
public:
    void setString(const std::string &text) override { held = text; }
    std::string held;
};

class FakeAutostart : public Autostart
{
public:
    bool isEnabled() const override { return isOn; }
    bool setEnabled(bool enabled) override
    {
        if (isWorking)
            isOn = enabled;
        return isWorking || !enabled;
    }
    bool isOn = false;
    bool isWorking = true;
};

class FakePlaces : public Places
{
public:
    std::vector<std::string> folders() const override { return {}; }
    std::vector<std::string> mountedDisks() const override { return disks; }
    std::vector<std::string> disks;
};

} // namespace

/// The window over a real home folder, with the settings in a real file.
class OnboardingTest : public testing::Test, protected OnboardingDelegate
{
protected:
    OnboardingTest()
    {
        for (const char *folder : {"home/docs/taxes", "home/node_modules/x", "home/.hidden"})
            disk.makeFolder(folder);
    }
    ~OnboardingTest() override
    {
        window.reset();
        counting.finish(std::chrono::milliseconds(PATIENCE));
        background.finish(std::chrono::milliseconds(PATIENCE));
        main.close();
    }

    void onboardingFinished() override { ++finished; }
    void terminate() override { ++terminated; }

    void show()
    {
        controller = new OnboardingViewController({.folders = {.searchBaseFinder = finder,
                                                               .folderIdentity = identity,
                                                               .folderLister = lister,
                                                               .places = places,
                                                               .folderPicker = folderPicker,
                                                               .background = background,
                                                               .counting = counting,
                                                               .main = main},
                                                   .shortcutMonitor = monitor,
                                                   .shortcutBinder = binder,
                                                   .hotKey = hotKey,
                                                   .clipboard = clipboard,
                                                   .autostart = autostart},
                                                  home, *this);
        window =
            std::make_unique<SetupWindow>(QStringLiteral("Set Up Quillon"), controller, system);
        window->present();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    /// Returns the visible button or box with this text.
    QAbstractButton *button(const QString &text) const
    {
        const auto buttons = window->findChildren<QAbstractButton *>();
        const auto found = std::ranges::find_if(buttons, [&](const QAbstractButton *each) {
            return each->isVisible() && (QString(each->text()).remove(u'&').startsWith(text) ||
                                         each->accessibleName().contains(text));
        });
        return found == buttons.end() ? nullptr : *found;
    }
    bool says(const QString &text) const
    {
        return std::ranges::any_of(window->findChildren<QLabel *>(), [&](const QLabel *label) {
            return label->isVisible() && label->text().contains(text);
        });
    }
    bool comesToSay(const QString &text) const
    {
        return QTest::qWaitFor([&] { return says(text); }, PATIENCE);
    }
    void showFolder(const char *name)
    {
        window->findChild<OnboardingFolders *>()->addFolders({disk.makeFolder(name)});
        const auto isShown = [&] { return button(QString::fromUtf8(name)) != nullptr; };
        ASSERT_TRUE(QTest::qWaitFor(isShown, PATIENCE));
    }
    bool isFinished() const
    {
        return QTest::qWaitFor([this] { return finished > 0; }, PATIENCE) && finished == 1;
    }
    void storeShortcut() { monitor.store(QLNShortcut::fromText("Ctrl+Alt+Space")); }
    std::vector<std::string> stored()
    {
        std::vector<std::string> paths;
        for (const auto &[path, data] : finder.bookmarks.load())
            paths.push_back(path);
        return paths;
    }

    TemporaryFolder disk;
    const std::string home = disk.makeFolder("home");
    JsonDefaultsStore store{disk.path("settings/quillon.json")};
    FakeDefaultsChanges changes;
    StatxFolderIdentity identity;
    PosixFolderLister lister;
    SearchBaseFinder finder{store, identity};
    FakeHotKey hotKey;
    QLNShortcutMonitor monitor{store, changes};
    QLNShortcutBinder binder{monitor, hotKey};
    TextClipboard clipboard;
    FakeAutostart autostart;
    FakePlaces places;
    FakeFolderPicker folderPicker;
    PlainWindowSystem system;
    MainTaskQueue main;
    PoolTaskQueue background{2};
    PoolTaskQueue counting{1};
    OnboardingViewController *controller = nullptr;
    std::unique_ptr<SetupWindow> window;
    int finished = 0;
    int terminated = 0;
};

TEST_F(OnboardingTest, isFilledInSoThatReturnAloneIsEnough)
{
    hotKey.taken = QLNShortcut::fromText("Ctrl+Alt+Space")->keys;
    places.disks = {disk.makeFolder("usb")};
    show();
    EXPECT_TRUE(comesToSay(QStringLiteral("3 folders"))) << "as the index would hold them";
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return button(QStringLiteral("usb")) != nullptr; }, PATIENCE));
    EXPECT_FALSE(button(QStringLiteral("usb"))->isChecked());
    EXPECT_TRUE(button(QStringLiteral("Home folder"))->isChecked());
    EXPECT_EQ(hotKey.grabbed(), std::nullopt) << "it was only tried";
    EXPECT_THAT(stored(), IsEmpty());
    EXPECT_EQ(monitor.shortcut(), std::nullopt);

    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
    EXPECT_TRUE(isFinished());
    EXPECT_THAT(stored(), ElementsAre(home));
    EXPECT_EQ(monitor.shortcut(), QLNShortcut::fromText("Alt+Super+Space")) << "the next free one";
    EXPECT_TRUE(autostart.isOn);
}

TEST_F(OnboardingTest, asksForAShortcutAndAFolderAndThenIsDone)
{
    show();
    button(QStringLiteral("Home folder"))->click();
    EXPECT_TRUE(comesToSay(QStringLiteral("Choose a folder to go on.")));
    EXPECT_FALSE(button(QStringLiteral("Done"))->isEnabled());
    button(QStringLiteral("Shortcut"))->click();
    QTest::keyClick(button(QStringLiteral("Shortcut")), Qt::Key_Backspace);
    EXPECT_TRUE(says(QStringLiteral("Record a shortcut and choose a folder to go on.")));

    button(QStringLiteral("Home folder"))->click();
    ASSERT_TRUE(comesToSay(QStringLiteral("1 folder chosen")));
    EXPECT_THAT(stored(), ElementsAre(home));
    EXPECT_TRUE(says(QStringLiteral("Record a shortcut to go on.")));
    storeShortcut();
    EXPECT_TRUE(button(QStringLiteral("Done"))->isEnabled());
}

TEST_F(OnboardingTest, takesACombinationOfKeysWhereverTheKeyboardIs)
{
    constexpr quint32 CODE_OF_K = 45;
    hotKey.keyNames = {{CODE_OF_K, "k"}};
    show();
    const int height = window->height();
    QKeyEvent plain(QEvent::KeyPress, Qt::Key_K, {}, CODE_OF_K, 0, 0);
    QApplication::sendEvent(QApplication::focusWidget(), &plain);
    EXPECT_EQ(monitor.shortcut(), std::nullopt);
    hotKey.taken = QLNShortcut::fromText("Ctrl+K")->keys;
    QKeyEvent taken(QEvent::KeyPress, Qt::Key_K, Qt::ControlModifier, CODE_OF_K, 0, 0);
    QApplication::sendEvent(QApplication::focusWidget(), &taken);
    EXPECT_TRUE(says(QStringLiteral("Ctrl+K is in use by another program.")));
    EXPECT_EQ(window->height(), height) << "notes come and go in their own room";
    QKeyEvent event(QEvent::KeyPress, Qt::Key_K, Qt::ControlModifier | Qt::AltModifier, CODE_OF_K,
                    0, 0);
    QApplication::sendEvent(QApplication::focusWidget(), &event);
    EXPECT_EQ(monitor.shortcut(), QLNShortcut::fromText("Ctrl+Alt+K"));
}

TEST_F(OnboardingTest, goesOnWhereTheDesktopStartsNothingAtLogin)
{
    autostart.isWorking = false;
    show();
    button(QStringLiteral("Done"))->click();
    EXPECT_TRUE(says(QStringLiteral("Quillon cannot be started at login here.")));
    EXPECT_EQ(finished, 0);
    button(QStringLiteral("Done"))->click();
    EXPECT_TRUE(isFinished());
}

TEST_F(OnboardingTest, showsWhatIsStoredAndStoresWhatItShows)
{
    storeShortcut();
    const std::string work = disk.makeFolder("work");
    finder.bookmarks.add(work);
    show();
    ASSERT_TRUE(QTest::qWaitFor([&] { return !button(QStringLiteral("Home folder"))->isChecked(); },
                                PATIENCE));
    window->hide();
    // "Set Up Again" empties the settings within the same process.
    store.remove("qln-bookmarks");
    window->present();
    ASSERT_TRUE(QTest::qWaitFor([&] { return button(QStringLiteral("Home folder"))->isChecked(); },
                                PATIENCE));
    EXPECT_FALSE(button(QStringLiteral("work"))->isChecked());
    button(QStringLiteral("Done"))->click();
    EXPECT_TRUE(isFinished());
    EXPECT_THAT(stored(), ElementsAre(home));
}

TEST_F(OnboardingTest, asksBeforeItIsClosedWithoutBeingDone)
{
    show();
    QTest::keyClick(window.get(), Qt::Key_Escape);
    EXPECT_TRUE(says(QStringLiteral("Quit before the set-up is done?")));
    button(QStringLiteral("Continue Set-Up"))->click();
    EXPECT_TRUE(says(QStringLiteral("The folders to search")));
    EXPECT_EQ(terminated, 0);

    window->close();
    EXPECT_TRUE(window->isVisible());
    button(QStringLiteral("Quit"))->click();
    EXPECT_EQ(terminated, 1);
}

TEST_F(OnboardingTest, givesNoLetterToTwoControls)
{
    for (const QString &language : {QStringLiteral("en"), QStringLiteral("de")}) {
        const SpokenLanguage spoken({language});
        show();
        EXPECT_EQ(contestedMnemonics(*window), QStringList()) << language.toStdString();
        window->close();
        EXPECT_EQ(contestedMnemonics(*window), QStringList()) << language.toStdString();
    }
}

TEST_F(OnboardingTest, takesSeveralFoldersFromTheChooser)
{
    disk.makeFolder("work/one");
    disk.makeFolder("work/two");
    show();
    button(QStringLiteral("Choose Folder…"))->click();
    EXPECT_EQ(folderPicker.startFolder, QDir::homePath().toStdString());
    folderPicker.answer(std::nullopt);
    auto *chooser = window->findChild<QFileDialog *>();
    ASSERT_NE(chooser, nullptr) << "the toolkit's own";
    ASSERT_TRUE(QTest::qWaitForWindowExposed(chooser));
    chooser->setDirectory(QString::fromStdString(disk.path("work")));
    auto *list = chooser->findChild<QAbstractItemView *>(QStringLiteral("listView"));
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return list->model()->rowCount(list->rootIndex()) == 2; }, PATIENCE));
    list->selectAll();
    QMetaObject::invokeMethod(chooser, "accept");
    ASSERT_TRUE(comesToSay(QStringLiteral("3 folders chosen"))) << "with the home folder";
    EXPECT_THAT(stored(), ElementsAre(disk.path("work/one"), disk.path("work/two")));
}

TEST_F(OnboardingTest, takesTheFoldersOfTheDesktopsOwnChooser)
{
    const std::string folder = disk.makeFolder("work");
    show();
    button(QStringLiteral("Choose Folder…"))->click();
    folderPicker.answer(std::vector{folder});
    ASSERT_TRUE(comesToSay(QStringLiteral("2 folders chosen"))) << "with the home folder";
    button(QStringLiteral("Choose Folder…"))->click();
    folderPicker.answer(std::vector<std::string>());
    EXPECT_EQ(window->findChild<QFileDialog *>(), nullptr) << "the user has cancelled";
    EXPECT_THAT(stored(), ElementsAre(folder));
}

TEST_F(OnboardingTest, replacesAChooserThatIsStillOpen)
{
    show();
    const auto objects = window->findChildren<QObject *>().size();
    for (int press = 0; press < 2; ++press)
        button(QStringLiteral("Choose Folder…"))->click();
    EXPECT_EQ(window->findChildren<QObject *>().size(), objects) << "nothing of the first is left";
    folderPicker.answer(std::nullopt);
    EXPECT_EQ(window->findChildren<QFileDialog *>().size(), 1);
}

TEST_F(OnboardingTest, refusesWhatCannotBeSearchedAndSaysWhy)
{
    const std::string file = disk.writeFile("file.txt");
    finder.bookmarks.add(home);
    show();
    ASSERT_TRUE(comesToSay(QStringLiteral("1 folder chosen"))) << "chosen earlier";
    window->findChild<OnboardingFolders *>()->addFolders(
        {file, disk.path("gone"), home, home + "/docs", home + "/.hidden"});
    ASSERT_TRUE(comesToSay(QStringLiteral("2 folders chosen"))) << "hidden ones are not in it yet";
    for (const std::string &path : {file, disk.path("gone")})
        EXPECT_TRUE(says(QStringLiteral("“%1” is no folder.").arg(QString::fromStdString(path))));
    EXPECT_TRUE(
        says(QStringLiteral("“%1” is searched already.").arg(QString::fromStdString(home))));
    EXPECT_TRUE(says(QStringLiteral("/docs” is searched already, as a part of “")));
    EXPECT_THAT(stored(), ElementsAre(home, home + "/.hidden"));
}

TEST_F(OnboardingTest, givesTheCommandToBindWhereNoKeyCanBeHad)
{
    finder.bookmarks.add(home);
    show();
    EXPECT_FALSE(says(QStringLiteral("quillon --toggle")));
    hotKey.possible = false;
    ASSERT_TRUE(comesToSay(QStringLiteral("quillon --toggle"))) << "known some time later";
    button(QStringLiteral("Copy"))->click();
    EXPECT_EQ(clipboard.held, "quillon --toggle");
    ASSERT_TRUE(
        QTest::qWaitFor([&] { return button(QStringLiteral("Done"))->isEnabled(); }, PATIENCE));
    button(QStringLiteral("Done"))->click();
    EXPECT_TRUE(isFinished());
    EXPECT_EQ(store.string("ShowQLNShortcut"), "desktop");
}

TEST_F(OnboardingTest, staysWhenTheSettingsCannotBeWritten)
{
    disk.writeFile("settings"); // where a folder would be needed
    show();
    button(QStringLiteral("Done"))->click();
    EXPECT_TRUE(comesToSay(writeFault()));
    EXPECT_EQ(finished, 0);
}

TEST_F(OnboardingTest, isWalkedThroughWithTheTabKey)
{
    show();
    storeShortcut();
    showFolder("folder at work");
    EXPECT_EQ(QApplication::focusWidget(), button(QStringLiteral("Done")));
    button(QStringLiteral("Shortcut"))->setFocus(Qt::TabFocusReason);
    QStringList stops;
    for (int stop = 0; stop < 6; ++stop) {
        auto *focused = qobject_cast<QAbstractButton *>(QApplication::focusWidget());
        ASSERT_NE(focused, nullptr);
        stops << (focused->accessibleName().isEmpty() ? focused->text()
                                                      : focused->accessibleName());
        QTest::keyClick(focused, Qt::Key_Tab);
    }
    EXPECT_TRUE(stops[0].endsWith(QStringLiteral("Ctrl+Alt+Space"))) << stops[0].toStdString();
    EXPECT_TRUE(stops[1].startsWith(QStringLiteral("Home folder"))) << stops[1].toStdString();
    EXPECT_TRUE(stops[2].endsWith(QStringLiteral("folder at work"))) << stops[2].toStdString();
    EXPECT_EQ(stops[3], QStringLiteral("Choose &Folder…"));
    EXPECT_EQ(stops[4], QStringLiteral("Start at &login"));
    EXPECT_EQ(stops[5], QStringLiteral("&Quit"));
}

TEST_F(OnboardingTest, scrollsManyFoldersAndShowsTheOneThatWasAdded)
{
    show();
    const auto isWhole = [this](const QString &name) {
        const QAbstractButton *box = button(name);
        return box != nullptr && box->visibleRegion().boundingRect().height() == box->height();
    };
    ASSERT_TRUE(comesToSay(QStringLiteral("3 folders")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return isWhole(QStringLiteral("Home folder")); }, PATIENCE));
    for (int folder = 0; folder < 20; ++folder)
        disk.makeFolder("many/" + std::to_string(folder));
    std::vector<std::string> paths;
    for (int folder = 0; folder < 20; ++folder)
        paths.push_back(disk.path("many/" + std::to_string(folder)));
    window->findChild<OnboardingFolders *>()->addFolders(paths);
    ASSERT_TRUE(comesToSay(QStringLiteral("21 folders chosen")));
    EXPECT_TRUE(QTest::qWaitFor([&] { return isWhole(QStringLiteral("many/19")); }, PATIENCE));
    EXPECT_TRUE(button(QStringLiteral("Home folder"))->visibleRegion().isEmpty());
    EXPECT_LT(window->height(), window->screen()->availableGeometry().height());
    button(QStringLiteral("Home folder"))->setFocus(Qt::TabFocusReason);
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_TRUE(isWhole(QStringLiteral("many/0"))) << "the view follows the keyboard";
}

TEST_F(OnboardingTest, stopsCountingWhenItIsHidden)
{
    show();
    window->hide();
    EXPECT_TRUE(counting.finish(std::chrono::milliseconds(PATIENCE)));
    EXPECT_FALSE(window->isVisible());
}

TEST_F(OnboardingTest, answersClicksWhileFoldersAreStillToBeCounted)
{
    std::promise<void> slowDisk;
    counting.post([disk = slowDisk.get_future().share()] { disk.wait(); });
    storeShortcut();
    show();
    showFolder("work");
    button(QStringLiteral("Home folder"))->click();
    button(QStringLiteral("Done"))->click();
    EXPECT_TRUE(isFinished());
    EXPECT_THAT(stored(), ElementsAre(disk.path("work")));
    slowDisk.set_value();
}

} // namespace quillon
