#pragma once

#include "platform/linux/GioPointers.h"

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

/// Opens the URI with the application, which goes on by itself. False when it could not be started.
bool launch(GAppInfo *application, const std::string &uri);

/// Starts a program with its arguments, the program's name first; it goes on by itself and its
/// output is dropped. False when there is no such program.
bool startProgram(const std::vector<std::string> &arguments);

} // namespace quillon
