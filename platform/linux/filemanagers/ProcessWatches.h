#pragma once

#include "platform/linux/bus/Deadline.h"

#include <optional>
#include <string>

#include <sys/types.h>

namespace quillon {

/// Returns a folder with this name or path that the process watches for changes, as a file manager
/// watches the folder it shows. Searches the user's home folder and then everything else, nearest
/// folders first, without hidden folders and without what is mounted from other machines. Returns
/// nothing when none is found before the deadline.
std::optional<std::string> watchedFolder(pid_t process, const std::string &name, Deadline deadline);

/// Returns whether the process watches this folder. Returns false for another user's process, whose
/// watches are unknown.
bool isWatchedFolder(pid_t process, const std::string &path);

} // namespace quillon
