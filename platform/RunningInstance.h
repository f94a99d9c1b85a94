#pragma once

#include "platform/RemoteSearch.h"

#include <optional>
#include <string>

namespace quillon {

/// Reaches the instance of the application that runs already from another process. Every operation
/// blocks until it is answered, for a few seconds at most.
class RunningInstance
{
public:
    enum class Outcome
    {
        done,
        notRunning,
        /// There is no session bus to find an instance on.
        noBus,
        /// There is one, and it did not take the request.
        notAnswering,
    };

    RunningInstance() = default;
    virtual ~RunningInstance() = default;
    RunningInstance(const RunningInstance &) = delete;
    RunningInstance &operator=(const RunningInstance &) = delete;

    virtual bool isRunning() = 0;
    /// Asks for one of the actions of RemoteControl; "quit" returns when the instance has ended.
    virtual Outcome request(const std::string &action) = 0;
    /// The answer is also absent when there is no instance.
    virtual RemoteAnswer find(const RemoteQuery &query) = 0;
    /// What the instance knows of itself, as a JSON object; absent when there is no instance or it
    /// does not answer.
    virtual std::optional<std::string> status() = 0;
};

} // namespace quillon
