#include "platform/linux/filemanagers/DesktopFileManager.h"

#include "platform/linux/applications/Applications.h"
#include "platform/linux/disk/BoundedFolders.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/filemanagers/FolderItems.h"

#include <algorithm>
#include <utility>

#include <unistd.h>

namespace quillon {

namespace {

using namespace std::chrono_literals;

/// The time for one call of the service, including what file managers and disks take.
constexpr auto CALL_LIMIT = 3000ms;
/// The time for one answer of a file system, within CALL_LIMIT.
constexpr auto DISK_LIMIT = 2000ms;
/// The time until a window of ours that is hidden has lost the keyboard.
constexpr auto LEAVING_LIMIT = 150ms;
/// The time until a window that was opened is there.
constexpr auto WINDOW_LIMIT = 2000ms;

std::string withoutSuffix(const std::string &desktopId)
{
    constexpr std::string_view SUFFIX = ".desktop";
    return desktopId.ends_with(SUFFIX) ? desktopId.substr(0, desktopId.size() - SUFFIX.size())
                                       : desktopId;
}

bool hasDesktopId(const ManagerDriver &driver, const std::string &desktopId)
{
    return std::ranges::find(driver.identity().desktopIds, withoutSuffix(desktopId)) !=
           driver.identity().desktopIds.end();
}

} // namespace

DesktopFileManager::DesktopFileManager(Choice choice, const LaunchToken &token)
    : choice_(std::move(choice)),
      session_(BusConnection::session()),
      accessibility_(session_),
      disk_({.diskOf = remoteDiskOf})
{
    const Surroundings surroundings{session_, accessibility_, windows_, disk_, token};
    for (const auto make : {makeNautilusDriver, makeNemoDriver, makeCajaDriver, makeThunarDriver,
                            makeDolphinDriver, makePcmanfmQtDriver})
        drivers_.push_back(make(surroundings));
    generic_ = std::make_unique<ManagerDriver>(ManagerDriver::Identity{}, surroundings);
}

FolderLister::Kind DesktopFileManager::kind(const std::string &path, Deadline deadline)
{
    const auto ask = [path] { return PosixFolderLister().kind(path); };
    return disk_.run(path, deadline.atMost(DISK_LIMIT).remaining(), ask)
        .value_or(FolderLister::Kind::unknown);
}

// The front window

void DesktopFileManager::noteFrontWindow()
{
    auto window = frontWindows_.active();
    const MutexLock lock(mutex_);
    frontWindow_ = std::move(window);
}

std::optional<DesktopWindow> DesktopFileManager::frontWindow() const
{
    const MutexLock lock(mutex_);
    return frontWindow_;
}

ManagerDriver *DesktopFileManager::driverOf(const DesktopWindow &window) const
{
    const auto found = std::ranges::find_if(drivers_, [&](const auto &driver) {
        return driver->identity().windowClass == window.windowClass;
    });
    return found == drivers_.end() ? nullptr : found->get();
}

bool DesktopFileManager::isFrontmost() const
{
    const auto window = frontWindow();
    return window && driverOf(*window);
}

std::optional<std::string> DesktopFileManager::frontWindowFolder()
{
    return frontWindowFolder(Deadline(CALL_LIMIT));
}

std::optional<std::string> DesktopFileManager::frontWindowFolder(Deadline deadline)
{
    const auto window = frontWindow();
    ManagerDriver *driver = window ? driverOf(*window) : nullptr;
    return driver ? driver->folderOf(*window, deadline) : std::nullopt;
}

std::vector<std::string> DesktopFileManager::frontWindowItems()
{
    const Deadline deadline(CALL_LIMIT);
    const auto folder = frontWindowFolder(deadline);
    if (!folder)
        return {};
    const auto list = [path = *folder] { return folderItems(path); };
    return disk_.run(*folder, deadline.atMost(DISK_LIMIT).remaining(), list)
        .value_or(std::vector<std::string>{});
}

// The choice of the file manager

ManagerDriver &DesktopFileManager::driverFor(const std::string &desktopId)
{
    const auto found = std::ranges::find_if(
        drivers_, [&](const auto &driver) { return hasDesktopId(*driver, desktopId); });
    return found == drivers_.end() ? *generic_ : **found;
}

std::string DesktopFileManager::application() const
{
    if (const auto choice = choice_()) {
        if (const auto application = installedApplication(*choice))
            return g_app_info_get_id(G_APP_INFO(application.get()));
    }
    return standardApplication();
}

std::string DesktopFileManager::standardApplication() const
{
    // Any program may be the default for folders, for example an editor or a disk analyser.
    const auto ids = folderApplications();
    const auto found =
        std::ranges::find_if(ids, [this](const std::string &id) { return isFileManager(id); });
    return found == ids.end() ? std::string() : *found;
}

bool DesktopFileManager::isFileManager(const std::string &desktopId) const
{
    const auto application = installedApplication(desktopId);
    return application && (quillon::isFileManager(application.get()) ||
                           std::ranges::any_of(drivers_, [&](const auto &driver) {
                               return hasDesktopId(*driver, desktopId);
                           }));
}

DesktopFileManager::Chosen DesktopFileManager::chosen()
{
    const std::string id = application();
    return {installedApplication(id), driverFor(id)};
}

// Showing folders

std::vector<DesktopWindow> DesktopFileManager::shownWindows(const ManagerDriver &driver) const
{
    auto windows = windows_.stacked();
    std::erase_if(windows, [&](const DesktopWindow &window) {
        return driverOf(window) != &driver || window.isMinimised;
    });
    return windows;
}

void DesktopFileManager::putInFront(std::uint32_t window, Deadline deadline) const
{
    // The panel, from which the request came, may still be closing. If it stays, the user has
    // brought it up again.
    const auto isOursGone = [this] { return windows_.process(windows_.activeId()) != getpid(); };
    if (windows_.waitUntil(0, isOursGone, deadline.atMost(LEAVING_LIMIT)))
        windows_.activate(window);
}

bool DesktopFileManager::bringUp(const ManagerDriver &driver, const std::function<bool()> &open,
                                 Deadline deadline)
{
    const std::string &windowClass = driver.identity().windowClass;
    const auto before = windows_.clients();
    if (!open())
        return false;
    if (!windows_.isComplete() || windowClass.empty())
        return true;
    // The new window has the keyboard already, unless the window manager prevents windows from
    // taking it.
    std::uint32_t opened = 0;
    windows_.waitUntil(
        0,
        [&] {
            const auto windows = windows_.stacked();
            const auto found = std::ranges::find_if(windows, [&](const DesktopWindow &window) {
                return window.windowClass == windowClass &&
                       std::ranges::find(before, window.id) == before.end();
            });
            opened = found == windows.end() ? 0 : found->id;
            return opened != 0;
        },
        deadline.atMost(WINDOW_LIMIT));
    if (opened != 0 && windows_.activeId() != opened)
        putInFront(opened, deadline);
    return true;
}

bool DesktopFileManager::openNewWindow(const Chosen &chosen, const std::string &folder,
                                       Deadline deadline)
{
    return bringUp(
        chosen.driver,
        [&] { return chosen.driver.openNewWindow(chosen.application.get(), folder, deadline); },
        deadline);
}

bool DesktopFileManager::openNewWindow(const std::string &folder)
{
    const Deadline deadline(CALL_LIMIT);
    return kind(folder, deadline) == FolderLister::Kind::folder &&
           openNewWindow(chosen(), folder, deadline);
}

bool DesktopFileManager::openInFrontWindow(const std::string &folder)
{
    const Deadline deadline(CALL_LIMIT);
    if (kind(folder, deadline) != FolderLister::Kind::folder)
        return false;
    const Chosen chosen = this->chosen();
    const auto window = chosen.driver.retarget(shownWindows(chosen.driver), folder, deadline);
    if (!window)
        return openNewWindow(chosen, folder, deadline);
    putInFront(*window, deadline);
    return true;
}

bool DesktopFileManager::select(const std::string &item, const std::string &folder)
{
    const Deadline deadline(CALL_LIMIT);
    const auto itemKind = kind(item, deadline);
    if ((itemKind != FolderLister::Kind::folder && itemKind != FolderLister::Kind::other) ||
        kind(folder, deadline) != FolderLister::Kind::folder)
        return false;
    const Chosen chosen = this->chosen();
    return bringUp(
        chosen.driver,
        [&] { return chosen.driver.select(chosen.application.get(), item, folder, deadline); },
        deadline);
}

bool DesktopFileManager::showProperties(const std::string &item)
{
    const Deadline deadline(CALL_LIMIT);
    const auto itemKind = kind(item, deadline);
    if (itemKind != FolderLister::Kind::folder && itemKind != FolderLister::Kind::other)
        return false;
    ManagerDriver &driver = chosen().driver;
    return bringUp(
        driver, [&] { return driver.showProperties(item, deadline); }, deadline);
}

bool DesktopFileManager::probe()
{
    const Deadline deadline(CALL_LIMIT);
    ManagerDriver &driver = chosen().driver;
    const auto windows = shownWindows(driver);
    return windows.empty() ? driver.isAnswering(deadline)
                           : driver.folderOf(windows.front(), deadline).has_value();
}

} // namespace quillon
