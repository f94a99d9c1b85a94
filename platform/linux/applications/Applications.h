#pragma once

#include "platform/linux/bus/GioPointers.h"

#include <gio/gdesktopappinfo.h>

#include <string>
#include <vector>

namespace quillon {

/// The installed application with this desktop id, with or without ".desktop" at its end; null when
/// there is none.
ObjectRef<GDesktopAppInfo> installedApplication(const std::string &id);

/// The desktop ids of the applications that open folders, the default one first.
std::vector<std::string> folderApplications();

/// Whether an application calls itself a file manager.
bool isFileManager(GDesktopAppInfo *application);

// What is started goes on by itself, whatever becomes of this process, and its output is dropped.

/// Opens the URI with the application. False when it could not be started.
bool launch(GAppInfo *application, const std::string &uri);
/// Starts an application that takes no files, with the folder as its working folder. False as
/// above.
bool launchIn(GDesktopAppInfo *application, const std::string &folder);

/// Starts a program with its arguments, the program's name first, in the folder, or in that of
/// this process. False when there is no such program or folder.
bool startProgram(const std::vector<std::string> &arguments, const std::string &folder = {});

} // namespace quillon
