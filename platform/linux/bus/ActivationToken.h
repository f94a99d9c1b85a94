#pragma once

#include "base/Mutex.h"

#include <array>
#include <string>

namespace quillon {

/// The variables in which a program finds its activation token when it starts: Wayland's, and
/// X11's.
inline constexpr std::array ACTIVATION_VARIABLES{"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};

/// Returns the token by which the program that started this one passes on the right to the
/// keyboard: Wayland's, or else X11's. The token is empty when there is none or when it is not
/// valid text. Main thread only.
std::string activationToken();
/// Returns that token and removes it from the environment, so that no program started from here
/// inherits it.
std::string takeActivationToken();

/// The right to the keyboard that this program passes on to whatever it starts next. Safe from
/// every thread.
class LaunchToken
{
public:
    void set(std::string token) EXCLUDES(mutex_);
    /// Returns an empty text if there is no right to pass on.
    std::string text() const EXCLUDES(mutex_);

private:
    mutable Mutex mutex_;
    std::string text_ GUARDED_BY(mutex_);
};

} // namespace quillon
