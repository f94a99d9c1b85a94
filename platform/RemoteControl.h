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
        /// There is no bus to ask; the program runs without being reachable.
        unavailable,
    };

    struct Request
    {
        /// "activate" (the program was started a second time), "toggle", "show", "preferences",
        /// "rebuild" or "quit".
        std::string action;
        /// The token gives the right to the keyboard, as the caller was given it. It is empty when
        /// there is none.
        std::string activationToken;
    };

    struct Handlers
    {
        /// This is called on the main thread after the request has been answered.
        std::function<void(const Request &request)> perform;
        /// This is called on background threads, several at a time. An absent answer means that the
        /// caller has to search on its own.
        std::function<RemoteAnswer(const RemoteQuery &query)> find;
        /// This is called on background threads. Returns what the program knows of itself, as a
        /// JSON object.
        std::function<std::string()> status;
    };

    RemoteControl() = default;
    virtual ~RemoteControl() = default;
    RemoteControl(const RemoteControl &) = delete;
    RemoteControl &operator=(const RemoteControl &) = delete;

    virtual Claim claim(Handlers handlers) = 0;
};

} // namespace quillon
