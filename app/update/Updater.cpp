#include "app/update/Updater.h"

#include "app/update/UpdateNotices.h"
#include "base/TaskQueue.h"
#include "platform/Workspace.h"
#include "prefs/Preferences.h"

#include <QCoreApplication>

#include <utility>

namespace quillon {

Updater::Updater(const Services &services, std::string version, std::FILE *log)
    : services_(services),
      version_(std::move(version)),
      log_(log),
      window_(QCoreApplication::translate("Updater", "Quillon – Updates"), services.windowSystem)
{
    services_.updaterController.start(*this);
}

void Updater::startBackgroundPolling()
{
    log("Start background update polling...");
    isPolling_ = true;
    checkInBackground();
}

void Updater::checkInBackground()
{
    log("Checking for updates in background...");
    services_.updaterController.checkInBackground();
}

void Updater::checkInteractively()
{
    log("Checking for updates in foreground...");
    window_.present(UpdateNotices::checking(version_));
    services_.updaterController.checkInteractively();
}

std::vector<FeedParameter> Updater::feedParameters()
{
    const std::string wantsBetas = services_.enableBetaUpdates.value() ? "true" : "false";
    log("Should check for betas? " + wantsBetas);
    // "Yes" says what the parameter is for, whatever its value.
    return {{.key = "beta",
             .value = wantsBetas,
             .displayKey = "Enable beta updates",
             .displayValue = "Yes"}};
}

void Updater::didFindValidUpdate(const UpdateItem &item, bool isInteractive)
{
    log("Found valid update");
    setHasUninstalledUpdate(true);
    scheduleCheck(BETWEEN_CHECKS);
    if (isInteractive) {
        window_.update(UpdateNotices::update(
            item, version_, [this](const std::string &address) { openLink(address); }));
    }
}

void Updater::didNotFindUpdate(NoUpdate reason, bool isInteractive)
{
    log("Did not find an update");
    setHasUninstalledUpdate(false);
    if (reason == NoUpdate::notConfigured)
        isPolling_ = false; // The next answer would be the same.
    scheduleCheck(reason == NoUpdate::unreachable ? UNTIL_RETRY : BETWEEN_CHECKS);
    if (isInteractive)
        window_.update(UpdateNotices::noUpdate(reason, version_));
}

void Updater::log(const std::string &line)
{
    std::fprintf(log_, "%s\n", line.c_str());
    std::fflush(log_);
}

void Updater::setHasUninstalledUpdate(bool hasUninstalledUpdate)
{
    if (std::exchange(hasUninstalledUpdate_, hasUninstalledUpdate) != hasUninstalledUpdate &&
        changed_)
        changed_();
}

void Updater::scheduleCheck(std::chrono::hours delay)
{
    if (!isPolling_)
        return;
    services_.main.postDelayed(delay, [this, schedule = ++schedule_] {
        if (schedule == schedule_)
            checkInBackground();
    });
}

void Updater::openLink(const std::string &address)
{
    if (!services_.workspace.openLink(address))
        window_.present(UpdateNotices::noBrowser(address));
}

} // namespace quillon
