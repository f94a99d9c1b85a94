#pragma once

#include "platform/ApplicationLauncher.h"

namespace quillon {

class LaunchToken;

/// Starts the applications that GIO knows. The running program's own folder is removed from the
/// beginning of PATH, so that started programs do not search it. Main thread only.
class GioApplicationLauncher : public ApplicationLauncher
{
public:
    /// The token goes to the applications that are started. It outlives this object.
    explicit GioApplicationLauncher(const LaunchToken &token);

    std::vector<Application> applications() const override;
    bool launch(const std::string &id, const std::string &path) override;
    bool run(const std::string &commandLine, const std::string &folder) override;

private:
    const LaunchToken &token_;
};

} // namespace quillon
