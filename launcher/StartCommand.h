#pragma once

#include <cstdio>
#include <functional>
#include <string>

namespace quillon {

class RunningInstance;

/// The command "quillon": hands what is asked to the running instance, or starts the application
/// with it.
class StartCommand
{
public:
    /// Goes on as the application, which does what is asked once it runs: an action of
    /// RemoteControl, or "background" for nothing that is seen. Returns why it could not.
    using BecomeApplication = std::function<std::string(const std::string &action)>;

    /// Complaints are written to the stream; all outlive this.
    StartCommand(RunningInstance &instance, BecomeApplication becomeApplication,
                 std::FILE *complaints);

    /// Returns the exit status.
    int run(int argc, const char *const *argv) const;

private:
    int carryOut(const std::string &action) const;

    RunningInstance &instance_;
    BecomeApplication becomeApplication_;
    std::FILE *complaints_;
};

} // namespace quillon
