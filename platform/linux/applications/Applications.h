#pragma once

#include "platform/linux/bus/GioPointers.h"

#include <gio/gdesktopappinfo.h>

#include <string>
#include <vector>

namespace quillon {

/// The media type of folders.
inline constexpr const char *FOLDER_TYPE = "inode/directory";

/// Returns the installed application with this desktop id, which may lack its ".desktop". Returns
/// null when there is none.
ObjectRef<GDesktopAppInfo> installedApplication(const std::string &id);

/// Returns the desktop ids of the applications that open folders, the default one first.
std::vector<std::string> folderApplications();

/// Returns whether an application calls itself a file manager.
bool isFileManager(GDesktopAppInfo *application);

// A program that is started here outlives this process, and its output is discarded. It gets the
// token, unless that is empty, so that its window may take the keyboard.

/// Opens the URI with the application. Returns false when it could not be started.
bool launch(GAppInfo *application, const std::string &uri, const std::string &activationToken);
/// Starts an application that takes no files, with the folder as its working folder. Returns false
/// when it could not be started.
bool launchIn(GDesktopAppInfo *application, const std::string &folder,
              const std::string &activationToken);

/// Starts a program in the folder or, if none is given, in this process's working folder. The first
/// argument is the program's name. Returns false when there is no such program or folder.
bool startProgram(const std::vector<std::string> &arguments, const std::string &activationToken,
                  const std::string &folder = {});

} // namespace quillon
