#pragma once

#include "base/BoundedCalls.h"
#include "platform/Workspace.h"

namespace quillon {

/// Asks another Workspace for a limited time. An item whose file system does not answer in time
/// counts as gone. The other object outlives even the calls that have been given up.
class BoundedWorkspace final : public Workspace
{
public:
    BoundedWorkspace(Workspace &workspace, BoundedCalls &calls, std::chrono::milliseconds patience)
        : workspace_(workspace), calls_(calls), patience_(patience)
    {}

    bool open(const std::string &path) override;
    bool openLink(const std::string &address) override;
    std::string applicationToOpen(const std::string &path) const override;
    std::vector<std::string> iconNames(const std::string &path) const override;
    bool isFolder(const std::string &path) const override;
    std::string resolvingSymlinks(const std::string &path) const override;

private:
    Workspace &workspace_;
    BoundedCalls &calls_;
    const std::chrono::milliseconds patience_;
};

} // namespace quillon
