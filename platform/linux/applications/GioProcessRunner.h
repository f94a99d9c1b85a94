#pragma once

#include "base/Mutex.h"
#include "platform/ProcessRunner.h"

#include <memory>
#include <vector>

namespace quillon {

/// Programs as GIO runs them, each watched by a thread until it ends.
class GioProcessRunner : public ProcessRunner
{
public:
    GioProcessRunner();
    ~GioProcessRunner() override;

    std::optional<std::string> run(const Command &command, Ended ended) override EXCLUDES(mutex_);

private:
    class Watch;

    Mutex mutex_;
    std::vector<std::unique_ptr<Watch>> watches_ GUARDED_BY(mutex_);
};

} // namespace quillon
