#pragma once

#include "base/Mutex.h"
#include "platform/ProcessRunner.h"

#include <memory>
#include <vector>

namespace quillon {

class LaunchToken;

/// Runs programs by GIO. A thread waits for the end of each.
class GioProcessRunner : public ProcessRunner
{
public:
    /// The token goes to the programs. It outlives this object.
    explicit GioProcessRunner(const LaunchToken &token);
    ~GioProcessRunner() override;

    std::optional<std::string> run(const Command &command, Ended ended) override EXCLUDES(mutex_);

private:
    class Watch;

    const LaunchToken &token_;
    Mutex mutex_;
    std::vector<std::unique_ptr<Watch>> watches_ GUARDED_BY(mutex_);
};

} // namespace quillon
