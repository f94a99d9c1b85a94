#include "platform/linux/applications/BoundedWorkspace.h"

namespace quillon {

bool BoundedWorkspace::open(const std::string &path)
{
    return calls_
        .run(path, patience_, [&workspace = workspace_, path] { return workspace.open(path); })
        .value_or(false);
}

bool BoundedWorkspace::openLink(const std::string &address)
{
    return workspace_.openLink(address);
}

std::string BoundedWorkspace::applicationToOpen(const std::string &path) const
{
    return calls_
        .run(path, patience_,
             [&workspace = workspace_, path] { return workspace.applicationToOpen(path); })
        .value_or("");
}

std::vector<std::string> BoundedWorkspace::iconNames(const std::string &path) const
{
    return calls_
        .run(path, patience_, [&workspace = workspace_, path] { return workspace.iconNames(path); })
        .value_or(std::vector<std::string>());
}

bool BoundedWorkspace::isFolder(const std::string &path) const
{
    return calls_
        .run(path, patience_, [&workspace = workspace_, path] { return workspace.isFolder(path); })
        .value_or(false);
}

std::string BoundedWorkspace::resolvingSymlinks(const std::string &path) const
{
    return calls_
        .run(path, patience_,
             [&workspace = workspace_, path] { return workspace.resolvingSymlinks(path); })
        .value_or(path);
}

} // namespace quillon
