#pragma once

#include "actions/ActionModelFinder.h"
#include "actions/ActionRunner.h"
#include "app/ActionFailures.h"
#include "app/DesktopSearch.h"
#include "app/DesktopServices.h"
#include "app/IndexAnswers.h"
#include "app/SearchEngine.h"
#include "app/SetUpFlow.h"
#include "app/StatusReport.h"
#include "app/WindowTracker.h"
#include "app/panel/IconSource.h"
#include "app/panel/KeysView.h"
#include "app/panel/LightningSearchViewController.h"
#include "app/panel/SearchWindow.h"
#include "app/preferences/PreferencesViewController.h"
#include "app/preferences/search/SearchPreferencesViewController.h"
#include "app/update/BuildSettings.h"
#include "app/update/Feedback.h"
#include "app/update/Updater.h"
#include "app/widgets/SetupWindow.h"
#include "platform/RemoteControl.h"
#include "prefs/Preferences.h"
#include "shortcut/QLNShortcutBinder.h"
#include "shortcut/QLNShortcutMonitor.h"

#include <future>
#include <optional>
#include <string>

namespace quillon {

/// Owns the long-lived objects, in the order in which they need each other, and connects them. It
/// lives as long as the Qt loop runs.
class AppDelegate : public QObject, public SearchPanelDelegate, private SearchBaseBuildObserver
{
    Q_OBJECT

public:
    /// Takes the future result of reading the kept index.
    explicit AppDelegate(std::future<std::optional<KeptTree>> keptTree);
    ~AppDelegate() override;

    /// Binds the stored shortcut and carries out what the program was started for: "background"
    /// builds the index without a window, and every other request first shows what the user has to
    /// see.
    void applicationDidFinishLaunching(const RemoteControl::Request &request);
    /// Carries out a request of another process or of the shortcut. Windows that the user has to
    /// see first, and has not finished, are shown instead.
    void perform(const RemoteControl::Request &request);
    /// Returns the handlers of what other processes may ask.
    RemoteControl::Handlers remoteHandlers();
    TaskQueue &backgroundQueue() { return services_.backgroundQueue; }

    void closeSearchWindow(Closing closing) override;
    void openPreferences() override { openPreferences({}); }
    void leaveOut(const std::string &folder) override;
    void showKeys() override;
    bool takesFeedback() const override { return feedback_.isTaken(); }
    void sendFeedback() override { feedback_.open(); }
    bool looksForUpdates() const override { return !build_.updateFeed.empty(); }
    void checkForUpdates() override { updater_.checkInteractively(); }
    bool hasUninstalledUpdate() const override { return updater_.hasUninstalledUpdate(); }
    void terminate() override;
    void rebuildSearchBase() override { setUpFlow_.rebuild(); }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void buildBegan() override { lightningSearchViewController_.indexChanged(); }
    void indexRestored() override { lightningSearchViewController_.indexChanged(); }
    void buildEnded() override { lightningSearchViewController_.indexChanged(); }

    void joinSearchPanel();
    /// Reports in the panel and in a notification that the stored shortcut cannot be had, or
    /// removes the report from the panel.
    void showShortcutFault();
    void trackWindows();
    /// The stored set-up has been forgotten, so it begins again.
    void setUpAgain();

    void openPreferences(const std::string &activationToken);
    /// Types the text, if there is one, in place of the text in the field.
    void showSearchWindow(const std::string &text, const std::string &activationToken);
    void toggleSearchWindow(const std::string &activationToken);
    /// The program's icon was clicked, or the program was started again.
    void reopen(const std::string &activationToken);
    void open(const std::string &settings, const std::string &path,
              const std::function<void(const std::string &fault)> &receive);

    PreferencesViewController::Services preferencesServices();
    SearchPreferencesViewController *makeSearchPane();

    const BuildSettings build_ = BuildSettings::ofThisBuild();
    DesktopServices services_;
    Preferences preferences_;
    const DefaultsReceiver preferencesReceiver_;

    SearchEngine engine_;
    StatusReport statusReport_;
    IndexAnswers indexAnswers_;

    ActionFailures actionFailures_;
    ActionModelFinder actionModelFinder_;
    ActionRunner actionRunner_;
    DesktopSearch desktopSearch_;
    IconSource icons_;
    SearchWindow searchWindow_;
    LightningSearchViewController lightningSearchViewController_;

    QLNShortcutMonitor shortcutMonitor_;
    QLNShortcutBinder shortcutBinder_;

    WindowTracker windowTracker_;
    SetUpFlow setUpFlow_;
    /// Its window owns it.
    KeysView *keysView_;
    SetupWindow keysWindow_;
    /// The preferences own it.
    SearchPreferencesViewController *searchPane_;
    PreferencesViewController preferencesViewController_;

    Updater updater_;
    Feedback feedback_;
};

} // namespace quillon
