#pragma once

#include "platform/linux/bus/Deadline.h"

#include <optional>
#include <string>

#include <sys/types.h>

namespace quillon {

/// A folder of this name, or with this path, that the process watches for changes, as a file
/// manager does with what it shows: looked for below the user's home folder and then everywhere,
/// nearest first, without the hidden folders and what is mounted from other machines. Absent when
/// none is found in time.
std::optional<std::string> watchedFolder(pid_t process, const std::string &name, Deadline deadline);

/// Whether the process watches this folder; unknown, and thus false, for another user's processes.
bool isWatchedFolder(pid_t process, const std::string &path);

} // namespace quillon
