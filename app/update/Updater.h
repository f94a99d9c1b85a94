#pragma once

#include "app/widgets/NoticeWindow.h"
#include "platform/UpdateController.h"

#include <chrono>
#include <cstdio>
#include <functional>
#include <string>

namespace quillon {

class PreferencesBoolean;
class TaskQueue;
class WindowSystem;
class Workspace;

/// Looks for newer releases: at the start, once a day, and when the user asks, in which case the
/// user is told the outcome. It installs none. Main thread only.
class Updater : private UpdateControllerDelegate
{
public:
    struct Services
    {
        UpdateController &updaterController;
        const PreferencesBoolean &enableBetaUpdates;
        Workspace &workspace;
        WindowSystem &windowSystem;
        TaskQueue &main;
    };
    static constexpr std::chrono::hours BETWEEN_CHECKS{24};
    /// The delay after a background check that reached no server, since the network may be up soon.
    static constexpr std::chrono::hours UNTIL_RETRY{1};

    /// The services outlive this object. The controller is started here. The version is the running
    /// one.
    Updater(const Services &services, std::string version, std::FILE *log = stdout);

    /// Checks now, and once a day from now on.
    void startBackgroundPolling();
    void checkInBackground();
    /// Checks because the user asked, so a window says what the outcome is.
    void checkInteractively();

    /// Returns whether the last check found a newer release.
    bool hasUninstalledUpdate() const { return hasUninstalledUpdate_; }
    /// Calls back each time that the answer changes. There is one receiver.
    void onChange(std::function<void()> changed) { changed_ = std::move(changed); }

    bool isWindowVisible() const { return window_.isVisible(); }

private:
    std::vector<FeedParameter> feedParameters() override;
    void didFindValidUpdate(const UpdateItem &item, bool isInteractive) override;
    void didNotFindUpdate(NoUpdate reason, bool isInteractive) override;

    void log(const std::string &line);
    void setHasUninstalledUpdate(bool hasUninstalledUpdate);
    /// Schedules a check in place of the one that was scheduled before.
    void scheduleCheck(std::chrono::hours delay);
    void openLink(const std::string &address);

    Services services_;
    std::string version_;
    std::FILE *log_;
    NoticeWindow window_;
    bool isPolling_ = false;
    unsigned schedule_ = 0;
    bool hasUninstalledUpdate_ = false;
    std::function<void()> changed_;
};

} // namespace quillon
