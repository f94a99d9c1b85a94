#pragma once

#include "platform/ApplicationLauncher.h"

namespace quillon {

/// The applications that GIO knows. The folder that the running program stands in is taken off the
/// beginning of the process's PATH, so that what is started does not find it there. Main thread
/// only.
class GioApplicationLauncher : public ApplicationLauncher
{
public:
    GioApplicationLauncher();

    std::vector<Application> applications() const override;
    bool launch(const std::string &id, const std::string &path) override;
    bool run(const std::string &commandLine, const std::string &folder) override;
};

} // namespace quillon
