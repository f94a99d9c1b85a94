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
        /// This folder comes first on the program's PATH, unless it is empty.
        std::string firstOnPath = {};
    };
    /// Describes how a program ended and what it wrote.
    struct Output
    {
        /// Both texts are UTF-8, with U+FFFD for each byte that was not.
        std::string standardOutput;
        std::string standardError;
        /// It says whether the program ended by itself with the status 0.
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
