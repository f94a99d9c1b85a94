#pragma once

#include "platform/ApplicationLauncher.h"

namespace quillon {

/// Starts the applications that GIO knows. The running program's own folder is removed from the
/// beginning of PATH, so that started programs do not search it. Main thread only.
class GioApplicationLauncher : public ApplicationLauncher
{
public:
    GioApplicationLauncher();

    std::vector<Application> applications() const override;
    bool launch(const std::string &id, const std::string &path) override;
    bool run(const std::string &commandLine, const std::string &folder) override;
};

} // namespace quillon
