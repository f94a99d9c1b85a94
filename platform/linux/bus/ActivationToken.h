#pragma once

#include <string>

namespace quillon {

/// Returns the token by which the program that started this one passes on the right to the
/// keyboard: Wayland's, or else X11's. Empty when there is none or it is no text. Main thread only.
std::string activationToken();
/// Returns that token and removes it from the environment, so that no program started from here
/// inherits it.
std::string takeActivationToken();

} // namespace quillon
