#pragma once

#include "platform/HotKey.h"
#include "platform/PatientFolders.h"
#include "platform/PatientWorkspace.h"
#include "platform/linux/GioApplicationLauncher.h"
#include "platform/linux/GioProcessRunner.h"
#include "platform/linux/GioWorkspace.h"
#include "platform/linux/JsonDefaultsStore.h"
#include "platform/linux/PortalAppearance.h"
#include "platform/linux/PosixFolderLister.h"
#include "platform/linux/QtClipboard.h"
#include "platform/linux/QtTaskQueues.h"
#include "platform/linux/SerialTaskQueue.h"
#include "platform/linux/SettingsFileChanges.h"
#include "platform/linux/StateWindowPlaces.h"
#include "platform/linux/StatxFolderIdentity.h"
#include "platform/linux/X11WindowSystem.h"
#include "platform/linux/XdgAutostart.h"
#include "platform/linux/filemanagers/DesktopFileManager.h"
#include "platform/linux/updates/FeedUpdateController.h"
#include "platform/linux/watching/InotifyEventService.h"

#include <chrono>
#include <memory>
#include <string>

namespace quillon {

struct BuildSettings;

/// The platform as this program has it: one of each service, and the threads. Outlives whatever
/// uses them.
struct DesktopServices
{
    /// The settings of the build say where releases are told, the folder where the programs stand
    /// that serve this one.
    DesktopServices(const BuildSettings &build, const std::string &programsFolder);
    ~DesktopServices();
    DesktopServices(const DesktopServices &) = delete;
    DesktopServices &operator=(const DesktopServices &) = delete;

    /// Drops what waits and ends the threads; false when one of them hangs for longer than the
    /// patience. Nothing is posted afterwards.
    bool finish(std::chrono::milliseconds patience);

    MainTaskQueue mainQueue;
    PoolTaskQueue backgroundQueue;
    PoolTaskQueue iconQueue;
    PoolTaskQueue actionQueue;
    SerialTaskQueue eventQueue;

    JsonDefaultsStore defaults;
    /// One receiver each: the shortcut, and the preferences window.
    SettingsFileChanges defaultsChanges;
    SettingsFileChanges defaultsChangesForPreferences;
    GioWorkspace diskWorkspace;
    PatientWorkspace workspace;
    GioApplicationLauncher applications;
    GioProcessRunner processRunner;
    QtClipboard clipboard;
    DesktopFileManager fileManager;
    PosixFolderLister diskLister;
    PatientFolderLister folderLister;
    InotifyEventService eventService;
    StatxFolderIdentity diskIdentity;
    PatientFolderIdentity folderIdentity;
    X11WindowSystem windowSystem;
    StateWindowPlaces windowPlaces;
    XdgAutostart autostart;
    PortalAppearance appearance;
    FeedUpdateController updateController;
    const std::unique_ptr<HotKey> hotKey;
};

} // namespace quillon
