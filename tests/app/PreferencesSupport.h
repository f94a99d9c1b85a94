#pragma once

#include "app/preferences/PreferencesViewController.h"
#include "app/widgets/FormNote.h"
#include "matching/RecentAccessScore.h"
#include "platform/Autostart.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "platform/linux/settings/SettingsFileChanges.h"
#include "platform/linux/settings/StateWindowPlaces.h"
#include "prefs/KeptFolders.h"
#include "prefs/Preferences.h"
#include "shortcut/QLNShortcutBinder.h"
#include "shortcut/QLNShortcutMonitor.h"
#include "tests/core/SearchBaseSupport.h"
#include "tests/support/FakeApplicationLauncher.h"
#include "tests/support/FakeDefaultsChanges.h"
#include "tests/support/FakeFileManager.h"
#include "tests/support/FakeHotKey.h"
#include "tests/support/ManualTaskQueue.h"
#include "tests/support/Patience.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>
#include <QComboBox>
#include <QTest>

#include <gmock/gmock.h>

#include <filesystem>
#include <memory>
#include <string>

namespace quillon {

class FakeAutostart final : public Autostart
{
public:
    bool isEnabled() const override { return isOn; }
    bool setEnabled(bool enabled) override
    {
        if (isWorking)
            isOn = enabled;
        return isWorking;
    }

    bool isOn = false;
    bool isWorking = true;
};

/// The preferences window over settings in a file, with everything that it works with.
class PreferencesTest : public testing::Test
{
protected:
    static constexpr std::string_view FILE = "config/quillon/quillon.json";

    PreferencesTest()
    {
        launcher.installed = {
            {.id = "alpha.desktop", .name = "Alpha Files", .isFileManager = true},
            {.id = "beta.desktop", .name = "Beta Files", .isFileManager = true},
            {.id = "files.desktop", .name = "Files", .executable = "fm", .isFileManager = true},
            {.id = "gamma.desktop", .name = "Files", .isFileManager = true},
            {.id = "hidden.desktop", .name = "Hidden", .isShown = false, .isFileManager = true},
            {.id = "org.paint.desktop", .name = "Paint & Draw", .executable = "paint"},
        };
        fileManager.otherDesktopId = "beta.desktop";
    }

    std::string file() const { return folder.readFile(FILE); }
    void writeByHand(std::string_view text) const { folder.writeFile(FILE, text); }
    /// Makes every later write fail.
    void breakTheDisk() const
    {
        std::filesystem::remove_all(folder.path("config"));
        folder.writeFile("config", "a file");
    }

    PreferencesViewController &window() { return *window_; }
    void close() { window_.reset(); }

    GeneralPreferencesViewController &general()
    {
        return *window_->generalPreferencesViewController;
    }
    ActionPreferencesViewController &actions() { return *window_->actionPreferencesViewController; }
    AdvancedPreferencesViewController &advanced()
    {
        return *window_->advancedPreferencesViewController;
    }

    /// Counts that the path was opened this many times.
    void use(const std::string &path, int times)
    {
        for (int i = 0; i < times; ++i)
            score.addRecentAccess({path, path, {}, SearchBaseResultType::standard});
    }

    /// Makes and shows the window.
    void open(int tab = 0)
    {
        window_ = std::make_unique<PreferencesViewController>(
            PreferencesViewController::Services{
                .general = {.defaults = store,
                            .preferences = preferences,
                            .shortcutMonitor = monitor,
                            .shortcutBinder = binder,
                            .hotKey = keyboard,
                            .fileManager = fileManager,
                            .applications = launcher,
                            .autostart = autostart},
                .actions = {.defaults = store, .applications = launcher},
                .advanced = {.defaults = store,
                             .preferences = preferences,
                             .shortcutMonitor = monitor,
                             .recentAccessScore = score,
                             .keptFolders = kept,
                             .searchBase = base.searchBase,
                             .searchBaseLogger = base.logger,
                             .background = background,
                             .main = main},
                .changes = changes,
                .places = places},
            new FormPane);
        QObject::connect(&advanced(), &AdvancedPreferencesViewController::setUpForgotten,
                         &advanced(), [this] { ++setUps; });
        window_->tabView().setCurrentIndex(tab);
        window_->present();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window_.get(), PATIENCE));
    }

    /// Chooses an item as the arrow keys do, from the item that is shown.
    static void choose(QComboBox &menu, int index)
    {
        menu.setFocus();
        while (menu.currentIndex() != index)
            QTest::keyClick(&menu, menu.currentIndex() < index ? Qt::Key_Down : Qt::Key_Up);
    }
    /// Returns the complaints that a pane or a sheet shows.
    static QStringList faults(const QWidget &part)
    {
        QStringList said;
        for (const auto *note : part.findChildren<FormNote *>()) {
            if (note->hasFault())
                said << note->text();
        }
        return said;
    }

    TemporaryFolder folder;
    JsonDefaultsStore store{folder.path(FILE)};
    SettingsFileChanges changes{folder.path(FILE)};
    StateWindowPlaces places{folder.path("state/quillon/windows.json")};
    Preferences preferences{store};
    FakeDefaultsChanges shortcutChanges;
    FakeHotKey keyboard;
    QLNShortcutMonitor monitor{store, shortcutChanges};
    QLNShortcutBinder binder{monitor, keyboard};
    FakeFileManager fileManager;
    FakeApplicationLauncher launcher;
    FakeAutostart autostart;
    DefaultsRecentAccessScoreDataStore counts{store};
    RecentAccessScore score{counts};
    KeptFolders kept{store};
    SearchBaseOver<PosixFolderLister> base;
    ManualTaskQueue background;
    ManualTaskQueue main;
    int setUps = 0;

private:
    std::unique_ptr<PreferencesViewController> window_;
};

} // namespace quillon
