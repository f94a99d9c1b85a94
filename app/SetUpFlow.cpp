#include "app/SetUpFlow.h"

#include "app/DesktopServices.h"
#include "app/SearchEngine.h"
#include "app/panel/LightningSearchViewController.h"
#include "app/panel/SearchWindow.h"
#include "shortcut/QLNShortcutMonitor.h"

#include <QDir>

#include <utility>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// A build that takes longer shows its own window.
constexpr auto SHORT_BUILD = 3s;

} // namespace

SetUpFlow::SetUpFlow(const Parts &parts, std::function<void()> end)
    : parts_(parts),
      end_(std::move(end)),
      access_(parts.services.defaults),
      rebuildWindow_(tr("Rebuild Quillon Search"),
                     new BuildSearchBaseViewController({.searchBase = parts.engine.searchBase,
                                                        .builder = parts.engine.builder,
                                                        .defaults = parts.services.defaults,
                                                        .main = parts.services.mainQueue},
                                                       *this),
                     parts.services.windowSystem),
      onboardingWindow_(tr("Set Up Quillon"), makeOnboarding(), parts.services.windowSystem),
      isAccessSettled_(access_.hasAskedForAccess())
{
    parts_.windows.track(WindowTracker::buildSearchBaseWindow, rebuildWindow_,
                         [this] { rebuildWindow_.present(); });
    parts_.windows.track(WindowTracker::onboardingWindow, onboardingWindow_,
                         [this] { onboardingWindow_.present(); });
}

OnboardingViewController *SetUpFlow::makeOnboarding()
{
    DesktopServices &services = parts_.services;
    return new OnboardingViewController({.folders = {.searchBaseFinder = parts_.engine.finder,
                                                     .folderIdentity = services.folderIdentity,
                                                     .folderLister = services.folderLister,
                                                     .places = services.places,
                                                     .folderPicker = services.folderPicker,
                                                     .background = services.backgroundQueue,
                                                     .counting = services.countingQueue,
                                                     .main = services.mainQueue},
                                         .shortcutMonitor = parts_.shortcutMonitor,
                                         .shortcutBinder = parts_.shortcutBinder,
                                         .hotKey = *services.hotKey,
                                         .clipboard = services.clipboard,
                                         .autostart = services.autostart},
                                        QDir::homePath().toStdString(), *this);
}

bool SetUpFlow::isSetUp() const
{
    return parts_.shortcutMonitor.shortcut() && !parts_.engine.finder.bookmarks.load().empty();
}

void SetUpFlow::startHidden()
{
    isFirstShowDue_ = !isAccessSettled_ || !isSetUp();
    if (isAccessSettled_)
        parts_.engine.builder.start();
}

void SetUpFlow::showFirst(const std::string &activationToken)
{
    isFirstShowDue_ = false;
    if (!isAccessSettled_)
        showPermission(activationToken);
    else if (!isSetUp())
        parts_.windows.show(WindowTracker::onboardingWindow, activationToken);
    else
        buildBehindPanel(activationToken);
}

// The question about the file manager

void SetUpFlow::showPermission(const std::string &activationToken)
{
    DesktopServices &services = parts_.services;
    if (!permission_)
        permission_.emplace(
            AppleEventPermissionViewController::Services{.access = access_,
                                                         .appleScriptRunner =
                                                             parts_.engine.appleScriptRunner,
                                                         .background = services.backgroundQueue,
                                                         .main = services.mainQueue},
            services.windowSystem, *this);
    permission_->show();
    if (!activationToken.empty())
        services.windowSystem.activate(permission_->window()->winId(), activationToken);
}

void SetUpFlow::permissionFinished()
{
    isAccessSettled_ = true;
    showFirst();
}

// The builds

void SetUpFlow::buildBehindPanel(const std::string &activationToken)
{
    // The kept index is read while the panel is being shown.
    parts_.engine.builder.start();
    parts_.windows.show(WindowTracker::searchWindow, activationToken);
    parts_.services.mainQueue.postDelayed(SHORT_BUILD, [this] {
        const SearchBaseBuilder &builder = parts_.engine.builder;
        // No window comes between a user and a panel that is in use.
        if (builder.isBuilding() && !builder.isComparing() &&
            parts_.windows.isVisible(WindowTracker::searchWindow) && !parts_.panel.isInUse())
            showRebuild();
    });
}

void SetUpFlow::onboardingFinished()
{
    buildBehindPanel();
    parts_.windows.close(WindowTracker::onboardingWindow);
}

void SetUpFlow::showRebuild(const std::string &activationToken)
{
    if (!parts_.windows.isVisible(WindowTracker::buildSearchBaseWindow))
        windowBeforeRebuild_ = parts_.windows.frontWindow();
    parts_.windows.show(WindowTracker::buildSearchBaseWindow, activationToken);
    parts_.searchWindow.hide();
}

void SetUpFlow::rebuild(const std::string &activationToken)
{
    showRebuild(activationToken);
    parts_.engine.builder.start();
}

void SetUpFlow::searchBaseRebuildFinished()
{
    // A build that nobody watches, such as one at login, brings up no window.
    if (!parts_.windows.isVisible(WindowTracker::buildSearchBaseWindow))
        return;
    parts_.windows.show(WindowTracker::searchWindow);
    parts_.windows.close(WindowTracker::buildSearchBaseWindow);
}

void SetUpFlow::searchBaseRebuildStopped()
{
    if (windowBeforeRebuild_)
        parts_.windows.show(*windowBeforeRebuild_);
    parts_.windows.close(WindowTracker::buildSearchBaseWindow);
}

void SetUpFlow::typedDuringBuild(const QString &text)
{
    parts_.panel.typeAhead(text);
    parts_.windows.show(WindowTracker::searchWindow);
    parts_.windows.close(WindowTracker::buildSearchBaseWindow);
}

} // namespace quillon
