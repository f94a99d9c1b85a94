#pragma once

#include "actions/AppleEventAccess.h"
#include "app/WindowTracker.h"
#include "app/setup/AppleEventPermissionCoordinator.h"
#include "app/setup/BuildSearchBaseViewController.h"
#include "app/setup/OnboardingViewController.h"
#include "app/widgets/SetupWindow.h"

#include <functional>
#include <optional>
#include <string>

namespace quillon {

class LightningSearchViewController;
class SearchWindow;
struct DesktopServices;
struct SearchEngine;

/// The way to a panel that can be used: the question about the file manager until it is answered,
/// the set-up while it is not done, and the builds of the index, with the windows of all three.
/// Main thread only.
class SetUpFlow : public QObject,
                  public AppleEventPermissionDelegate,
                  public BuildSearchBaseDelegate,
                  public OnboardingDelegate
{
    Q_OBJECT

public:
    struct Parts
    {
        DesktopServices &services;
        SearchEngine &engine;
        QLNShortcutMonitor &shortcutMonitor;
        QLNShortcutBinder &shortcutBinder;
        WindowTracker &windows;
        SearchWindow &searchWindow;
        LightningSearchViewController &panel;
    };

    /// All parts outlive this object. The callback ends the program.
    SetUpFlow(const Parts &parts, std::function<void()> end);

    /// Returns whether the user has been asked if the program may talk to the file manager.
    bool isAccessSettled() const { return isAccessSettled_; }
    /// Returns whether there is a shortcut and a folder to search. A folder that is missing now was
    /// chosen all the same.
    bool isSetUp() const;
    /// Returns whether showFirst() has to come before anything else that is shown.
    bool isDue() const { return !isAccessSettled_ || isFirstShowDue_; }

    /// Builds the index and shows nothing, as at a start at login.
    void startHidden();
    /// Shows the question about the file manager, else the set-up if it is not done, else the panel
    /// over an index that is being built.
    void showFirst(const std::string &activationToken = {});
    /// Builds the index anew in its window.
    void rebuild(const std::string &activationToken = {});

private:
    void permissionFinished() override;
    void searchBaseRebuildFinished() override;
    void searchBaseRebuildStopped() override;
    void typedDuringBuild(const QString &text) override;
    void onboardingFinished() override;
    void terminate() override { end_(); }

    OnboardingViewController *makeOnboarding();
    void showPermission(const std::string &activationToken);
    void buildBehindPanel(const std::string &activationToken = {});
    void showRebuild(const std::string &activationToken = {});

    Parts parts_;
    const std::function<void()> end_;
    AppleEventAccess access_;
    SetupWindow rebuildWindow_;
    SetupWindow onboardingWindow_;
    /// It is made when it is first needed.
    std::optional<AppleEventPermissionCoordinator> permission_;

    bool isAccessSettled_;
    /// True until something is shown after a start at login.
    bool isFirstShowDue_ = false;
    /// The window, if any, that the rebuild window replaced.
    std::optional<WindowTracker::Window> windowBeforeRebuild_;
};

} // namespace quillon
