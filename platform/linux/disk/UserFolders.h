#pragma once

#include <string>

namespace quillon {

/// One of the user's base folders: what the environment variable names where that is an absolute
/// path, else the path below the home folder, which begins with "/". Without a trailing slash.
std::string userFolder(const char *variable, const char *belowHome);

} // namespace quillon
