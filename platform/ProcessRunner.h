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
    /// How a program ended and what it wrote.
    struct Output
    {
        /// Both texts are UTF-8, with U+FFFD in place of each byte that was not.
        std::string standardOutput;
        std::string standardError;
        /// True when the program ended by itself with the status 0.
        bool isSuccess = true;
    };
    using Ended = std::function<void(const Output &)>;

    ProcessRunner() = default;
    virtual ~ProcessRunner() = default;
    ProcessRunner(const ProcessRunner &) = delete;
    ProcessRunner &operator=(const ProcessRunner &) = delete;

    /// Starts the program with the environment, the working folder and the standard input of this
    /// one, and returns without waiting for it. Calls back once, on a thread of its own, when the
    /// program has ended and no process holds its outputs open any more. Never calls back once this
    /// object is destroyed, which leaves the program running. Returns the reason when the program
    /// could not be started, otherwise nothing.
    virtual std::optional<std::string> run(const Command &command, Ended ended) = 0;
};

} // namespace quillon
