#pragma once

#include <functional>
#include <string>

namespace quillon {

/// The one running instance on the user's session bus and the way to reach it. Main thread only.
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
    /// Called with "toggle", "show" or "quit"; starting the program a second time is "show".
    using Handler = std::function<void(const std::string &action)>;

    RemoteControl() = default;
    virtual ~RemoteControl() = default;
    RemoteControl(const RemoteControl &) = delete;
    RemoteControl &operator=(const RemoteControl &) = delete;

    virtual Claim claim(Handler handler) = 0;
    /// Asks the running instance to carry out the action; false when none answers.
    virtual bool send(const std::string &action) = 0;
};

} // namespace quillon
