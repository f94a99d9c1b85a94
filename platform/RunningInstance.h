#pragma once

#include "platform/RemoteSearch.h"

#include <optional>
#include <string>

namespace quillon {

/// Reaches, from another process, the instance of the application that is already running. Every
/// operation blocks until it is answered, for a few seconds at most.
class RunningInstance
{
public:
    enum class Outcome
    {
        done,
        notRunning,
        /// There is no session bus to find an instance on.
        noBus,
        /// There is an instance, but it did not accept the request.
        notAnswering,
    };

    RunningInstance() = default;
    virtual ~RunningInstance() = default;
    RunningInstance(const RunningInstance &) = delete;
    RunningInstance &operator=(const RunningInstance &) = delete;

    virtual bool isRunning() = 0;
    /// Asks for one of the actions of RemoteControl; "quit" returns when the instance has ended.
    virtual Outcome request(const std::string &action) = 0;
    /// Returns nothing also when there is no instance.
    virtual RemoteAnswer find(const RemoteQuery &query) = 0;
    /// Returns the state of the instance as a JSON object, or nothing when there is no instance or
    /// it does not answer.
    virtual std::optional<std::string> status() = 0;
    /// Has the instance count one opening of a path, for the settings of which this is the absolute
    /// path. Returns notRunning also for an instance with other settings.
    virtual Outcome use(const std::string &settings, const std::string &path) = 0;

    struct Opened
    {
        Outcome outcome = Outcome::notRunning;
        /// Says why the path was not opened, in English; empty when it was.
        std::string fault = {};
    };
    /// Has the instance open a path as plain Return does, for the same settings. Starts an instance
    /// where none is running, and waits until the path is opened, for half a minute at most.
    virtual Opened open(const std::string &settings, const std::string &path) = 0;
};

} // namespace quillon
