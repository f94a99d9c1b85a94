#pragma once

#include "platform/RemoteSearch.h"

#include <functional>
#include <string>

namespace quillon {

/// Receives the requests and searches of other processes when this is the running instance. Main
/// thread only.
class RemoteControl
{
public:
    enum class Claim
    {
        /// This process now answers requests under the application's name.
        owner,
        /// Another process answers them.
        taken,
        /// There is no bus; the program runs without being reachable.
        unavailable,
    };

    struct Request
    {
        /// "activate" (the program was started a second time), "toggle", "show", "preferences",
        /// "rebuild" or "quit".
        std::string action;
        /// The caller's right to the keyboard. It is empty when there is none.
        std::string activationToken;
    };

    struct Handlers
    {
        /// Runs on the main thread after the request has been answered.
        std::function<void(const Request &request)> perform;
        /// Runs on background threads, several at a time. An absent answer means that the caller
        /// has to search on its own.
        std::function<RemoteAnswer(const RemoteQuery &query)> find;
        /// Returns the state of the program as a JSON object. Runs on background threads.
        std::function<std::string()> status;
        /// Counts one opening of the path. Returns false when this instance has other settings than
        /// those at the first path. Runs on the main thread.
        std::function<bool(const std::string &settings, const std::string &path)> use;
    };

    RemoteControl() = default;
    virtual ~RemoteControl() = default;
    RemoteControl(const RemoteControl &) = delete;
    RemoteControl &operator=(const RemoteControl &) = delete;

    virtual Claim claim(Handlers handlers) = 0;
};

} // namespace quillon
