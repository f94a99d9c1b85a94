#pragma once

#include "platform/RemoteSearch.h"

#include <functional>
#include <string>

namespace quillon {

/// How other processes reach this one when it is the running instance: requests and searches.
/// Main thread only.
class RemoteControl
{
public:
    enum class Claim
    {
        /// This process now answers requests under the application's name.
        owner,
        /// Another process does.
        taken,
        /// There is no bus to ask; the program runs without being reachable.
        unavailable,
    };

    struct Request
    {
        /// "activate" (the program was started a second time), "toggle", "show", "preferences",
        /// "rebuild" or "quit".
        std::string action;
        /// The right to the keyboard, as who asks was given it; empty when there is none.
        std::string activationToken;
    };

    struct Handlers
    {
        /// Called on the main thread, when the request has been answered already.
        std::function<void(const Request &request)> perform;
        /// Called on a background thread, several at a time; absent means that who asks has to
        /// search on its own.
        std::function<RemoteAnswer(const RemoteQuery &query)> find;
    };

    RemoteControl() = default;
    virtual ~RemoteControl() = default;
    RemoteControl(const RemoteControl &) = delete;
    RemoteControl &operator=(const RemoteControl &) = delete;

    virtual Claim claim(Handlers handlers) = 0;
};

} // namespace quillon
