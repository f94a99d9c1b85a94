#include "app/AppDelegate.h"

#include "app/panel/ActionHints.h"
#include "app/panel/PanelFooter.h"
#include "app/panel/SearchPanelView.h"
#include "app/widgets/QuillonStyle.h"
#include "platform/linux/session/ProgramEnd.h"
#include "shortcut/QLNShortcutValidator.h"

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QTabWidget>

#include <cstdlib>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// The time for which a disk that does not answer may delay the end of the program.
constexpr auto TASK_END_TIME = 50ms;
/// Returns the folder of the programs that serve this one, which is this program's own, built or
/// installed.
std::string programsFolder()
{
    return QCoreApplication::applicationDirPath().toStdString();
}

} // namespace

AppDelegate::AppDelegate(std::future<std::optional<KeptTree>> keptTree)
    : services_(build_, programsFolder()),
      preferences_(services_.defaults),
      preferencesReceiver_(
          services_.defaultsChanges.onChange([this] { preferences_.readChoices(); })),
      engine_(services_, preferences_, std::move(keptTree)),
      statusReport_(engine_.searchBase, engine_.builder, build_.version),
      indexAnswers_(engine_.searchBase, engine_.builder, engine_.recentAccessScore, preferences_),
      actionFailures_({.recentAccessScore = engine_.recentAccessScore,
                       .useQueue = engine_.useQueue,
                       .searchBase = engine_.searchBase,
                       .builder = engine_.builder,
                       .notifications = services_.notifications,
                       .windowSystem = services_.windowSystem,
                       .background = services_.backgroundQueue}),
      actionModelFinder_(services_.defaults),
      actionRunner_({services_.workspace, services_.fileManager, services_.clipboard,
                     services_.processRunner, services_.folderLister, services_.recentItems},
                    preferences_, engine_.appleScriptRunner, services_.actionQueue,
                    programsFolder()),
      desktopSearch_({.source = engine_.source,
                      .builder = engine_.builder,
                      .preferences = preferences_,
                      .actions = actionModelFinder_,
                      .runner = actionRunner_,
                      .background = services_.backgroundQueue,
                      .main = services_.mainQueue},
                     QDir::homePath().toStdString()),
      icons_(services_.workspace, services_.iconQueue, services_.mainQueue),
      searchWindow_(icons_, services_.windowSystem),
      lightningSearchViewController_(
          {.list = actionModelFinder_, .runner = actionRunner_}, engine_.source,
          searchWindow_.view(),
          {.background = services_.backgroundQueue, .main = services_.mainQueue}, *this),
      shortcutMonitor_(services_.defaults, services_.defaultsChanges),
      shortcutBinder_(shortcutMonitor_, *services_.hotKey),
      windowTracker_(services_.mainQueue, services_.windowSystem),
      setUpFlow_({.services = services_,
                  .engine = engine_,
                  .shortcutMonitor = shortcutMonitor_,
                  .shortcutBinder = shortcutBinder_,
                  .windows = windowTracker_,
                  .searchWindow = searchWindow_,
                  .panel = lightningSearchViewController_},
                 [this] { terminate(); }),
      keysView_(new KeysView),
      keysWindow_(tr("Quillon – Keys"), keysView_, services_.windowSystem),
      searchPane_(makeSearchPane()),
      preferencesViewController_(preferencesServices(), searchPane_),
      updater_({.updaterController = services_.updateController,
                .enableBetaUpdates = preferences_.enableBetaUpdates,
                .workspace = services_.workspace,
                .windowSystem = services_.windowSystem,
                .main = services_.mainQueue},
               build_.version),
      feedback_({.workspace = services_.workspace, .windowSystem = services_.windowSystem},
                build_.feedbackAddress)
{
    joinSearchPanel();
    trackWindows();
    engine_.builder.addObserver(*this);
    services_.appearance.onChange(
        [this] { QuillonStyle::preferDark(services_.appearance.prefersDark()); });
    qApp->installEventFilter(this);
}

PreferencesViewController::Services AppDelegate::preferencesServices()
{
    return {.general = {.defaults = services_.defaults,
                        .preferences = preferences_,
                        .shortcutMonitor = shortcutMonitor_,
                        .shortcutBinder = shortcutBinder_,
                        .hotKey = *services_.hotKey,
                        .fileManager = services_.fileManager,
                        .applications = services_.applications,
                        .autostart = services_.autostart},
            .actions = {.defaults = services_.defaults, .applications = services_.applications},
            .advanced = {.defaults = services_.defaults,
                         .preferences = preferences_,
                         .shortcutMonitor = shortcutMonitor_,
                         .recentAccessScore = engine_.recentAccessScore,
                         .keptFolders = engine_.keptFolders,
                         .searchBase = engine_.searchBase,
                         .searchBaseLogger = engine_.logger,
                         .background = services_.backgroundQueue,
                         .main = services_.mainQueue},
            .changes = services_.defaultsChanges,
            .places = services_.windowPlaces};
}

SearchPreferencesViewController *AppDelegate::makeSearchPane()
{
    return new SearchPreferencesViewController({.searchBase = engine_.searchBase,
                                                .builder = engine_.builder,
                                                .searchBaseFinder = engine_.finder,
                                                .folderIdentity = services_.folderIdentity,
                                                .folderLister = services_.folderLister,
                                                .folderPicker = services_.folderPicker,
                                                .background = services_.backgroundQueue,
                                                .main = services_.mainQueue});
}

AppDelegate::~AppDelegate()
{
    // The threads end before what they use does. Everything worth keeping is on the disk already,
    // so a thread that hangs on a dead file system is left behind with the process.
    engine_.builder.stop();
    services_.mainQueue.close();
    engine_.searchBase.reset(); // ends an update that is under way
    if (!services_.finish(TASK_END_TIME))
        std::_Exit(EXIT_SUCCESS);
}

void AppDelegate::joinSearchPanel()
{
    auto &controller = lightningSearchViewController_;
    connect(&searchWindow_, &SearchWindow::willAppear, this,
            [this] { services_.fileManager.noteFrontWindow(); });
    connect(&searchWindow_, &SearchWindow::appeared, &controller,
            &LightningSearchViewController::viewWillAppear);
    connect(&searchWindow_, &SearchWindow::appeared, this, [this] {
        // The settings may name folders by now, or missing folders may be back.
        if (!engine_.builder.hasLocations())
            engine_.builder.start();
    });
    connect(&searchWindow_, &SearchWindow::becameKey, &controller,
            &LightningSearchViewController::windowDidBecomeKey);
    connect(&searchWindow_, &SearchWindow::disappeared, &controller,
            &LightningSearchViewController::viewDidDisappear);
    actionRunner_.onFailure([this](const ActionFailure &failure) {
        services_.mainQueue.post([this, failure] { actionFailures_.report(failure); });
    });
    connect(keysView_, &KeysView::closed, this,
            [this] { windowTracker_.show(WindowTracker::searchWindow); });
    connect(searchPane_, &SearchPreferencesViewController::rebuildRequested, this,
            [this] { setUpFlow_.rebuild(); });
    connect(preferencesViewController_.advancedPreferencesViewController,
            &AdvancedPreferencesViewController::setUpForgotten, this, &AppDelegate::setUpAgain);
    updater_.onChange([&controller] { controller.updateUpdateButton(); });
    connect(&shortcutBinder_, &QLNShortcutBinder::pressed, this,
            [this] { perform({.action = "toggle", .activationToken = {}}); });
    connect(&shortcutBinder_, &QLNShortcutBinder::outcomeChanged, this,
            &AppDelegate::showShortcutFault);
}

void AppDelegate::showShortcutFault()
{
    const auto outcome = shortcutBinder_.outcome();
    const auto fault = outcome ? QLNShortcutValidator::fault(*outcome) : std::nullopt;
    PanelFooter &footer = searchWindow_.view().footer();
    const auto &shortcut = shortcutMonitor_.shortcut();
    if (!fault || !shortcut) {
        footer.setNotice({});
        return;
    }
    const QString keys = QString::fromStdString(shortcut->text());
    const QString reason = QLNShortcutValidator::words(*fault, *shortcut);
    footer.setNotice(tr("%1 does not work. Preferences…").arg(keys), reason);
    // The set-up and the preferences show the fault beside the shortcut.
    if (windowTracker_.isVisible(WindowTracker::onboardingWindow) ||
        windowTracker_.isVisible(WindowTracker::preferencesWindow))
        return;
    // If the desktop shows no notifications, only the panel's footer shows the fault.
    services_.notifications.show(
        {.title = tr("%1 does not bring Quillon up").arg(keys).toStdString(),
         .text = reason.toStdString(),
         .choice = Notifications::Choice{tr("Preferences…").toStdString(),
                                         [this] { openPreferences(); }}},
        [] {});
}

void AppDelegate::trackWindows()
{
    windowTracker_.track(WindowTracker::searchWindow, searchWindow_,
                         [this] { searchWindow_.present(); });
    windowTracker_.track(WindowTracker::preferencesWindow, preferencesViewController_,
                         [this] { preferencesViewController_.present(); });
}

void AppDelegate::applicationDidFinishLaunching(const RemoteControl::Request &request)
{
    shortcutBinder_.start();
    // The panel must not appear in front of the preferences that the user asked for.
    const bool showsPreferences =
        request.action == "preferences" && setUpFlow_.isAccessSettled() && setUpFlow_.isSetUp();
    if (request.action == "background" || showsPreferences)
        setUpFlow_.startHidden();
    else
        setUpFlow_.showFirst(request.activationToken);
    if (showsPreferences)
        openPreferences(request.activationToken);
    updater_.startBackgroundPolling();
}

void AppDelegate::perform(const RemoteControl::Request &request)
{
    const std::string &token = request.activationToken;
    if (request.action == "quit")
        terminate();
    else if (setUpFlow_.isAccessSettled() && !request.path.empty()) {
        services_.launchToken.set(token);
        desktopSearch_.run(request.action, request.path);
    } else if (setUpFlow_.isDue())
        setUpFlow_.showFirst(token);
    else if (windowTracker_.isVisible(WindowTracker::onboardingWindow))
        windowTracker_.show(WindowTracker::onboardingWindow, token);
    else if (request.action == "toggle")
        toggleSearchWindow(token);
    else if (request.action == "show")
        showSearchWindow(request.text, token);
    else if (request.action == "preferences")
        openPreferences(token);
    else if (request.action == "rebuild")
        setUpFlow_.rebuild(token);
    else
        reopen(token);
}

void AppDelegate::openPreferences(const std::string &activationToken)
{
    windowTracker_.show(WindowTracker::preferencesWindow, activationToken);
    searchWindow_.hide();
}

void AppDelegate::leaveOut(const std::string &folder)
{
    openPreferences({});
    preferencesViewController_.tabView().setCurrentWidget(searchPane_);
    searchPane_->leaveOut(folder);
}

void AppDelegate::showKeys()
{
    const auto &shortcut = shortcutMonitor_.shortcut();
    keysView_->showKeys(actionHints(actionModelFinder_.loadActions()),
                        shortcut ? shortcut->keyNames() : QStringList());
    keysWindow_.present();
    searchWindow_.hide();
}

void AppDelegate::showSearchWindow(const std::string &text, const std::string &activationToken)
{
    lightningSearchViewController_.typeAhead(QString::fromStdString(text));
    windowTracker_.show(WindowTracker::searchWindow, activationToken);
    // A panel that has the keyboard does not hear that it gets it.
    if (!text.empty() && searchWindow_.isActiveWindow())
        lightningSearchViewController_.windowDidBecomeKey();
}

void AppDelegate::toggleSearchWindow(const std::string &activationToken)
{
    if (windowTracker_.isVisible(WindowTracker::searchWindow))
        closeSearchWindow(Closing::dismissed);
    else
        windowTracker_.show(WindowTracker::searchWindow, activationToken);
}

void AppDelegate::reopen(const std::string &activationToken)
{
    if (windowTracker_.hasVisibleWindows())
        windowTracker_.bringForward(activationToken);
    else
        windowTracker_.show(WindowTracker::searchWindow, activationToken);
}

RemoteControl::Handlers AppDelegate::remoteHandlers()
{
    return {
        .perform = [this](const RemoteControl::Request &request) { perform(request); },
        .find = [this](const RemoteQuery &query) { return indexAnswers_.find(query); },
        .status = [this] { return statusReport_.json(); },
        .use = [this](const std::string &settings,
                      const std::string &path) { return indexAnswers_.recordUse(settings, path); },
        .open = [this](const std::string &settings, const std::string &path,
                       const auto &receive) { open(settings, path, receive); },
        .search = [this](const std::string &text,
                         auto receive) { desktopSearch_.search(text, std::move(receive)); },
        .describe = [this](const std::string &path) { return desktopSearch_.describe(path); },
        .rowActions = DesktopSearch::rowActions()};
}

void AppDelegate::open(const std::string &settings, const std::string &path,
                       const std::function<void(const std::string &fault)> &receive)
{
    if (settings != standardDefaultsPath())
        return receive("the running Quillon has other settings");
    if (setUpFlow_.isAccessSettled())
        return desktopSearch_.open(path, receive);
    setUpFlow_.showFirst();
    receive("Quillon has to be set up first");
}

void AppDelegate::closeSearchWindow(Closing closing)
{
    if (closing == Closing::dismissed) {
        searchWindow_.dismiss();
        return;
    }
    // Only while the panel has the keyboard can it pass the right to it on.
    if (searchWindow_.isVisible())
        services_.launchToken.set(services_.windowSystem.requestActivationToken());
    searchWindow_.hide();
}

void AppDelegate::terminate()
{
    ProgramEnd::begin();
    // Unlike quit(), this asks no window whether it may be closed.
    QCoreApplication::exit();
}

void AppDelegate::setUpAgain()
{
    windowTracker_.close(WindowTracker::preferencesWindow);
    setUpFlow_.showFirst();
}

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    // The session ends. Asking the windows first would let one of them delay it.
    if (watched == qApp && event->type() == QEvent::Quit) {
        terminate();
        return true;
    }
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange)
        icons_.clear();
    return QObject::eventFilter(watched, event);
}

} // namespace quillon
