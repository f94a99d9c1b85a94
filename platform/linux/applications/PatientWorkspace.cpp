#include "platform/linux/applications/PatientWorkspace.h"

namespace quillon {

bool PatientWorkspace::open(const std::string &path)
{
    return calls_
        .run(path, patience_, [&workspace = workspace_, path] { return workspace.open(path); })
        .value_or(false);
}

bool PatientWorkspace::openLink(const std::string &address)
{
    return workspace_.openLink(address);
}

std::string PatientWorkspace::applicationToOpen(const std::string &path) const
{
    return calls_
        .run(path, patience_,
             [&workspace = workspace_, path] { return workspace.applicationToOpen(path); })
        .value_or("");
}

std::vector<std::string> PatientWorkspace::iconNames(const std::string &path) const
{
    return calls_
        .run(path, patience_, [&workspace = workspace_, path] { return workspace.iconNames(path); })
        .value_or(std::vector<std::string>());
}

bool PatientWorkspace::isFolder(const std::string &path) const
{
    return calls_
        .run(path, patience_, [&workspace = workspace_, path] { return workspace.isFolder(path); })
        .value_or(false);
}

std::string PatientWorkspace::resolvingSymlinks(const std::string &path) const
{
    return calls_
        .run(path, patience_,
             [&workspace = workspace_, path] { return workspace.resolvingSymlinks(path); })
        .value_or(path);
}

} // namespace quillon
