#pragma once

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace quillon {

/// Runs programs and collects what they write. Safe from every thread.
class ProcessRunner
{
public:
    struct Command
    {
        std::string executable;
        std::vector<std::string> arguments;
        /// A folder that stands before the others on the program's PATH; empty for none.
        std::string firstOnPath = {};
    };
    /// What a program has left.
    struct Output
    {
        // All that was written, in UTF-8; U+FFFD stands for each byte that was not.
        std::string standardOutput;
        std::string standardError;
        /// Whether the program ended by itself with the status 0.
        bool isSuccess = true;
    };
    using Ended = std::function<void(const Output &)>;

    ProcessRunner() = default;
    virtual ~ProcessRunner() = default;
    ProcessRunner(const ProcessRunner &) = delete;
    ProcessRunner &operator=(const ProcessRunner &) = delete;

    /// Starts the program with the environment, the working folder and the standard input of this
    /// one, and returns without waiting for it. Calls back once, on a thread of its own, when the
    /// program has ended and nobody holds its outputs any more; never when this object goes
    /// before, which leaves the program running. Returns why the program could not be started;
    /// absent when it was.
    virtual std::optional<std::string> run(const Command &command, Ended ended) = 0;
};

} // namespace quillon
