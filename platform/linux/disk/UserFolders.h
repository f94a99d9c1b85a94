#pragma once

#include <string>

namespace quillon {

/// Returns one of the user's base folders, without a trailing slash: the value of the environment
/// variable if that is an absolute path, otherwise the path below the home folder, which begins
/// with "/".
std::string userFolder(const char *variable, const char *belowHome);

} // namespace quillon
