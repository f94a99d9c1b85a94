#include "platform/linux/disk/UserFolders.h"

#include <cstdlib>

#include <unistd.h>

#include <pwd.h>

namespace quillon {

namespace {

std::string homeFolder()
{
    if (const char *home = std::getenv("HOME"); home && *home == '/')
        return home;
    const passwd *const user = ::getpwuid(::getuid());
    return user ? user->pw_dir : "/";
}

} // namespace

std::string userFolder(const char *variable, const char *belowHome)
{
    const char *const configured = std::getenv(variable);
    return configured && *configured == '/' ? configured : homeFolder() + belowHome;
}

} // namespace quillon
