#pragma once

#include "platform/Workspace.h"

namespace quillon {

class LaunchToken;

/// Knows the desktop's default applications and icon names through GIO.
class GioWorkspace : public Workspace
{
public:
    /// The token goes to the applications that are started. It outlives this object.
    explicit GioWorkspace(const LaunchToken &token) : token_(token) {}

    bool open(const std::string &path) override;
    bool openLink(const std::string &address) override;
    std::string applicationToOpen(const std::string &path) const override;
    std::vector<std::string> iconNames(const std::string &path) const override;
    bool isFolder(const std::string &path) const override;
    std::string resolvingSymlinks(const std::string &path) const override;

private:
    const LaunchToken &token_;
};

} // namespace quillon
