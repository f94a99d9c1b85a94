#pragma once

#include "actions/ActionModelFinder.h"
#include "actions/ActionRunner.h"
#include "actions/AppleEventAccess.h"
#include "actions/AppleScriptRunner.h"
#include "actions/FrontFinderSearch.h"
#include "app/panel/IconSource.h"
#include "app/panel/LightningSearchViewController.h"
#include "app/panel/SearchBaseSource.h"
#include "app/panel/SearchWindow.h"
#include "app/setup/AppleEventPermissionCoordinator.h"
#include "app/setup/BuildSearchBaseViewController.h"
#include "app/setup/SetupWindow.h"
#include "core/SearchBase.h"
#include "core/SearchBaseBuilder.h"
#include "indexing/SearchBaseFinder.h"
#include "indexing/SearchBaseLogger.h"
#include "matching/FuzzyMatch.h"
#include "matching/RecentAccessScore.h"
#include "platform/PatientFolders.h"
#include "platform/RemoteControl.h"
#include "platform/linux/GioProcessRunner.h"
#include "platform/linux/GioWorkspace.h"
#include "platform/linux/JsonDefaultsStore.h"
#include "platform/linux/PortalAppearance.h"
#include "platform/linux/PosixFolderLister.h"
#include "platform/linux/QtClipboard.h"
#include "platform/linux/QtTaskQueues.h"
#include "platform/linux/SerialTaskQueue.h"
#include "platform/linux/SettingsFileChanges.h"
#include "platform/linux/StatxFolderIdentity.h"
#include "platform/linux/X11WindowSystem.h"
#include "platform/linux/filemanagers/DesktopFileManager.h"
#include "platform/linux/watching/InotifyEventService.h"
#include "prefs/Preferences.h"
#include "shortcut/QLNShortcutBinder.h"
#include "shortcut/QLNShortcutMonitor.h"

#include <atomic>
#include <memory>
#include <optional>
#include <string>

namespace quillon {

/// Owns the long-lived objects, in the order in which they need each other, and joins them. Lives
/// as long as the Qt loop runs.
class AppDelegate : public QObject,
                    public SearchPanelDelegate,
                    public AppleEventPermissionDelegate,
                    public BuildSearchBaseDelegate,
                    private SearchBaseBuildObserver
{
    Q_OBJECT

public:
    AppDelegate();
    ~AppDelegate() override;

    /// Binds the stored shortcut, and builds the index in the background once the user has been
    /// asked about the file manager. Then does what the start asks for; "background" shows nothing.
    void applicationDidFinishLaunching(const std::string &action);
    /// Carries out a request of another process or of the shortcut. While the user is being asked
    /// about the file manager, what would show a window brings the question to the front.
    void perform(const RemoteControl::Request &request);
    /// What other processes may ask.
    RemoteControl::Handlers remoteHandlers();
    TaskQueue &backgroundQueue() { return backgroundQueue_; }

    void closeSearchWindow(Closing closing) override;
    void openPreferences() override {}
    void sendFeedback() override {}
    void checkForUpdates() override {}
    bool hasUninstalledUpdate() const override { return false; }
    void terminate() override;
    void permissionFinished() override;
    void searchBaseRebuildFinished() override;

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildBegan() override;
    void buildEnded() override;
    PanelPalette palette() const;
    void applyPalette();
    void startPermissionFlow();
    /// On any thread.
    RemoteAnswer find(const RemoteQuery &query) const;

    MainTaskQueue mainQueue_;
    PoolTaskQueue backgroundQueue_;
    PoolTaskQueue iconQueue_;
    PoolTaskQueue actionQueue_;
    SerialTaskQueue eventQueue_;

    JsonDefaultsStore defaults_;
    SettingsFileChanges defaultsChanges_;
    Preferences preferences_;
    GioWorkspace workspace_;
    GioProcessRunner processRunner_;
    QtClipboard clipboard_;
    DesktopFileManager fileManager_;
    PosixFolderLister diskLister_;
    PatientFolderLister folderLister_;
    InotifyEventService eventService_;
    StatxFolderIdentity diskIdentity_;
    PatientFolderIdentity folderIdentity_;
    X11WindowSystem windowSystem_;
    PortalAppearance appearance_;
    std::unique_ptr<HotKey> hotKey_;

    AppleEventAccess appleEventAccess_;
    AppleScriptRunner appleScriptRunner_;
    FrontFinderSearch frontFinderSearch_;

    DefaultsRecentAccessScoreDataStore recentAccessScoreDataStore_;
    RecentAccessScore searchBaseRecentAccessScore_;
    FuzzyMatch searchBaseFuzzyMatch_;
    SearchBaseFinder searchBaseFinder_;
    SearchBaseLogger searchBaseLogger_;
    SearchBase searchBase_;
    SearchBaseBuilder searchBaseBuilder_;
    SearchBaseSource source_;

    ActionModelFinder actionModelFinder_;
    ActionRunner actionRunner_;
    IconSource icons_;
    SearchWindow searchWindow_;
    LightningSearchViewController lightningSearchViewController_;

    /// In its window, which owns it.
    BuildSearchBaseViewController *rebuildSearchBaseViewController_;
    SetupWindow buildSearchBaseWindow_;

    QLNShortcutMonitor shortcutMonitor_;
    QLNShortcutBinder shortcutBinder_;

    /// The user has been asked whether the file manager may be talked to.
    bool isAccessSettled_ = false;
    /// It holds everything that the settings name; read on every thread.
    std::atomic<bool> isIndexComplete_ = false;
    /// Made when it is first needed.
    std::optional<AppleEventPermissionCoordinator> appleEventPermissionCoordinator_;
};

} // namespace quillon
