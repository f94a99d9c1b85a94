#include "app/AppDelegate.h"

#include "app/panel/SearchPanelView.h"
#include "platform/linux/ProgramEnd.h"
#include "platform/linux/SessionHotKey.h"
#include "prefs/PreferenceKeys.h"

#include <QApplication>
#include <QDir>
#include <QEvent>
#include <QThread>

#include <algorithm>
#include <cstdlib>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// How long a disk that does not answer may hold up the end of the program, for each queue.
constexpr auto PATIENCE_AT_THE_END = 20ms;
/// Room for a build beside the searches.
constexpr int FEWEST_BACKGROUND_THREADS = 3;

/// Where the programs stand that serve this one: beside it, built or installed.
std::string programsFolder()
{
    return QCoreApplication::applicationDirPath().toStdString();
}

} // namespace

AppDelegate::AppDelegate()
    : backgroundQueue_(std::max(FEWEST_BACKGROUND_THREADS, QThread::idealThreadCount())),
      iconQueue_(1),
      actionQueue_(1),
      eventQueue_("org.quillon.Quillon.sbw-fs-events"),
      defaults_(standardDefaultsPath()),
      defaultsChanges_(standardDefaultsPath()),
      preferences_(defaults_),
      fileManager_([this] { return defaults_.string(PreferenceKeys::FILE_MANAGER); }),
      folderLister_(diskLister_),
      folderIdentity_(diskIdentity_),
      hotKey_(makeSessionHotKey()),
      appleEventAccess_(defaults_),
      appleScriptRunner_(fileManager_),
      frontFinderSearch_({.appleScriptRunner = appleScriptRunner_,
                          .fileManager = fileManager_,
                          .preferences = preferences_,
                          .background = backgroundQueue_,
                          .main = mainQueue_}),
      recentAccessScoreDataStore_(defaults_),
      searchBaseRecentAccessScore_(recentAccessScoreDataStore_),
      searchBaseFuzzyMatch_(&searchBaseRecentAccessScore_),
      searchBaseFinder_(defaults_, folderIdentity_),
      searchBaseLogger_(defaults_),
      searchBase_(&frontFinderSearch_, searchBaseFinder_, searchBaseFuzzyMatch_,
                  {.folderLister = folderLister_,
                   .logger = searchBaseLogger_,
                   .mainQueue = mainQueue_,
                   .watching = {{.events = eventService_, .eventQueue = eventQueue_}}}),
      searchBaseBuilder_({.searchBase = searchBase_,
                          .searchBaseFinder = searchBaseFinder_,
                          .background = backgroundQueue_,
                          .main = mainQueue_}),
      source_(searchBase_, searchBaseFinder_, searchBaseBuilder_, frontFinderSearch_),
      actionModelFinder_(defaults_),
      actionRunner_({workspace_, fileManager_, clipboard_, processRunner_}, preferences_,
                    appleScriptRunner_, actionQueue_, programsFolder()),
      icons_(workspace_, iconQueue_, mainQueue_),
      searchWindow_(icons_, windowSystem_),
      lightningSearchViewController_({.list = actionModelFinder_, .runner = actionRunner_}, source_,
                                     searchWindow_.view(),
                                     {.background = backgroundQueue_, .main = mainQueue_}, *this),
      rebuildSearchBaseViewController_(
          new BuildSearchBaseViewController({.searchBase = searchBase_,
                                             .builder = searchBaseBuilder_,
                                             .defaults = defaults_,
                                             .main = mainQueue_},
                                            *this)),
      buildSearchBaseWindow_(tr("Rebuild Quillon Search"), rebuildSearchBaseViewController_,
                             windowSystem_),
      shortcutMonitor_(defaults_, defaultsChanges_),
      shortcutBinder_(shortcutMonitor_, *hotKey_)
{
    auto &controller = lightningSearchViewController_;
    connect(&searchWindow_, &SearchWindow::willAppear, this,
            [this] { fileManager_.noteFrontWindow(); });
    connect(&searchWindow_, &SearchWindow::appeared, &controller,
            &LightningSearchViewController::viewWillAppear);
    connect(&searchWindow_, &SearchWindow::appeared, this, [this] {
        // Folders may have been named in the settings by hand since.
        if (!source_.state().hasLocations)
            rebuildSearchBaseViewController_->startBuilding();
    });
    connect(&searchWindow_, &SearchWindow::becameKey, &controller,
            &LightningSearchViewController::windowDidBecomeKey);
    connect(&searchWindow_, &SearchWindow::disappeared, &controller,
            &LightningSearchViewController::viewDidDisappear);
    searchBaseBuilder_.addObserver(*this);
    appearance_.onChange([this] { applyPalette(); });
    qApp->installEventFilter(this);
    applyPalette();
}

AppDelegate::~AppDelegate()
{
    // The threads end before what they use does. Everything worth keeping is on the disk already,
    // so a thread that hangs on a dead file system is left behind with the process.
    searchBaseBuilder_.stop();
    mainQueue_.close();
    searchBase_.reset(); // ends an update that is under way
    bool haveEnded = eventQueue_.finish(PATIENCE_AT_THE_END);
    for (PoolTaskQueue *queue : {&backgroundQueue_, &actionQueue_, &iconQueue_})
        haveEnded = haveEnded && queue->finish(PATIENCE_AT_THE_END);
    if (!haveEnded)
        std::_Exit(EXIT_SUCCESS);
}

void AppDelegate::applicationDidFinishLaunching(const std::string &action)
{
    connect(&shortcutBinder_, &QLNShortcutBinder::pressed, this,
            [this] { perform({.action = "toggle", .activationToken = {}}); });
    shortcutBinder_.start();
    isAccessSettled_ = appleEventAccess_.hasAskedForAccess();
    if (isAccessSettled_)
        rebuildSearchBaseViewController_->startBuilding();
    if (action != "background")
        perform({.action = "show", .activationToken = {}});
}

void AppDelegate::perform(const RemoteControl::Request &request)
{
    if (request.action == "quit")
        terminate();
    else if (!isAccessSettled_)
        startPermissionFlow();
    else if (request.action == "toggle" && searchWindow_.isVisible())
        closeSearchWindow(Closing::dismissed);
    else
        searchWindow_.present();
}

RemoteControl::Handlers AppDelegate::remoteHandlers()
{
    return {.perform = [this](const RemoteControl::Request &request) { perform(request); },
            .find = [this](const RemoteQuery &query) { return find(query); }};
}

RemoteAnswer AppDelegate::find(const RemoteQuery &query) const
{
    if (!isIndexComplete_ || query.settings != standardDefaultsPath())
        return std::nullopt;
    std::vector<RemoteMatch> matches;
    for (const FuzzyMatchResult &result : searchBaseFuzzyMatch_.match(query.text, query.limit)) {
        matches.push_back({result.text(), result.score(), {}});
        for (const TextRange &range : result.highlightRanges())
            matches.back().ranges.emplace_back(range.location, range.length);
    }
    return matches;
}

void AppDelegate::closeSearchWindow(Closing closing)
{
    if (closing == Closing::dismissed)
        searchWindow_.dismiss();
    else
        searchWindow_.hide();
}

void AppDelegate::terminate()
{
    ProgramEnd::begin();
    // Unlike quit() this asks no window whether it may be closed.
    QCoreApplication::exit();
}

void AppDelegate::startPermissionFlow()
{
    if (!appleEventPermissionCoordinator_)
        appleEventPermissionCoordinator_.emplace(
            AppleEventPermissionViewController::Services{.access = appleEventAccess_,
                                                         .appleScriptRunner = appleScriptRunner_,
                                                         .background = backgroundQueue_,
                                                         .main = mainQueue_},
            windowSystem_, *this);
    appleEventPermissionCoordinator_->show(palette());
}

void AppDelegate::permissionFinished()
{
    isAccessSettled_ = true;
    rebuildSearchBaseViewController_->startBuilding();
    searchWindow_.present();
}

void AppDelegate::searchBaseRebuildFinished()
{
    buildSearchBaseWindow_.close();
}

void AppDelegate::buildBegan()
{
    isIndexComplete_ = false;
    lightningSearchViewController_.indexChanged();
}

void AppDelegate::buildEnded()
{
    isIndexComplete_ = searchBaseBuilder_.hasLocations();
    lightningSearchViewController_.indexChanged();
}

bool AppDelegate::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == qApp && event->type() == QEvent::ApplicationPaletteChange) {
        icons_.clear();
        applyPalette();
    }
    return QObject::eventFilter(watched, event);
}

PanelPalette AppDelegate::palette() const
{
    return PanelPalette::forDesktop(QApplication::palette(), appearance_.prefersDark());
}

void AppDelegate::applyPalette()
{
    searchWindow_.setFramePalette(palette());
    searchWindow_.view().setPanelPalette(palette());
    buildSearchBaseWindow_.setPanelPalette(palette());
    if (appleEventPermissionCoordinator_)
        appleEventPermissionCoordinator_->setPanelPalette(palette());
}

} // namespace quillon
