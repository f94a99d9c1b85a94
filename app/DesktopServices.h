#pragma once

#include "base/SerialTaskQueue.h"
#include "platform/HotKey.h"
#include "platform/linux/applications/BoundedWorkspace.h"
#include "platform/linux/applications/GioApplicationLauncher.h"
#include "platform/linux/applications/GioProcessRunner.h"
#include "platform/linux/applications/GioWorkspace.h"
#include "platform/linux/applications/XbelRecentItems.h"
#include "platform/linux/applications/XdgAutostart.h"
#include "platform/linux/bus/ActivationToken.h"
#include "platform/linux/disk/BoundedFolders.h"
#include "platform/linux/disk/PosixFolderLister.h"
#include "platform/linux/disk/StatxFolderIdentity.h"
#include "platform/linux/filemanagers/DesktopFileManager.h"
#include "platform/linux/filemanagers/DesktopPlaces.h"
#include "platform/linux/session/BusNotifications.h"
#include "platform/linux/session/PortalAppearance.h"
#include "platform/linux/session/PortalFolderPicker.h"
#include "platform/linux/session/QtClipboard.h"
#include "platform/linux/session/QtTaskQueues.h"
#include "platform/linux/settings/JsonDefaultsStore.h"
#include "platform/linux/settings/SettingsFileChanges.h"
#include "platform/linux/settings/StateWindowPlaces.h"
#include "platform/linux/settings/UserCacheFile.h"
#include "platform/linux/updates/FeedUpdateController.h"
#include "platform/linux/watching/InotifyEventService.h"
#include "platform/linux/windows/DesktopWindowSystem.h"

#include <chrono>
#include <memory>
#include <string>

namespace quillon {

struct BuildSettings;

/// The services of the platform that this program uses, one of each, and its threads. It outlives
/// everything that uses them.
struct DesktopServices
{
    /// The settings of the build name the feed of releases. The other argument is the folder of the
    /// programs that serve this one.
    DesktopServices(const BuildSettings &build, const std::string &programsFolder);
    ~DesktopServices();
    DesktopServices(const DesktopServices &) = delete;
    DesktopServices &operator=(const DesktopServices &) = delete;

    /// Drops the waiting tasks and ends the threads. Returns false when one of them hangs for
    /// longer than the patience. Nothing is posted afterwards.
    bool finish(std::chrono::milliseconds patience);

    MainTaskQueue mainQueue;
    PoolTaskQueue backgroundQueue;
    PoolTaskQueue iconQueue;
    /// Folders are counted on this queue, which may take long and must delay nothing else.
    PoolTaskQueue countingQueue;
    PoolTaskQueue actionQueue;
    SerialTaskQueue eventQueue;

    JsonDefaultsStore defaults;
    SettingsFileChanges defaultsChanges;
    /// Every question to the disk goes through this object, so that a disk that one caller finds
    /// silent is silent for all.
    BoundedCalls diskCalls;
    LaunchToken launchToken;
    GioWorkspace diskWorkspace;
    BoundedWorkspace workspace;
    GioApplicationLauncher applications;
    GioProcessRunner processRunner;
    XbelRecentItems recentItems;
    QtClipboard clipboard;
    DesktopFileManager fileManager;
    DesktopPlaces places;
    PosixFolderLister diskLister;
    BoundedFolderLister folderLister;
    InotifyEventService eventService;
    StatxFolderIdentity diskIdentity;
    BoundedFolderIdentity folderIdentity;
    DesktopWindowSystem windowSystem;
    StateWindowPlaces windowPlaces;
    UserCacheFile keptIndex;
    XdgAutostart autostart;
    PortalAppearance appearance;
    PortalFolderPicker folderPicker;
    BusNotifications notifications;
    FeedUpdateController updateController;
    const std::unique_ptr<HotKey> hotKey;
};

} // namespace quillon
