#pragma once

#include <cstdio>
#include <functional>
#include <string>

namespace quillon {

class RunningInstance;

/// The command "quillon". It hands the request to the running instance, or starts the application
/// with it.
class StartCommand
{
public:
    /// Replaces this process by the application, which carries out the action: one of
    /// RemoteControl's actions, or "background", which shows nothing. Returns only on failure, with
    /// the reason.
    using BecomeApplication = std::function<std::string(const std::string &action)>;

    /// Writes complaints to the stream. All arguments outlive this object.
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
