#pragma once

#include "platform/ApplicationLauncher.h"

#include <string>
#include <vector>

namespace quillon {

/// A desktop on which a few applications are installed and nothing is started.
class FakeApplicationLauncher final : public ApplicationLauncher
{
public:
    std::vector<Application> installed;

    std::vector<Application> applications() const override { return installed; }
    bool launch(const std::string &, const std::string &) override { return false; }
    bool run(const std::string &, const std::string &) override { return false; }
};

} // namespace quillon
