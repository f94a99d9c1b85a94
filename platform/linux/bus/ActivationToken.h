#pragma once

#include <string>

namespace quillon {

/// Returns the token by which the program that started this one passes on the right to the
/// keyboard: Wayland's, or else X11's. The token is empty when there is none or when it is not
/// valid text. Main thread only.
std::string activationToken();
/// Returns that token and removes it from the environment, so that no program started from here
/// inherits it.
std::string takeActivationToken();

} // namespace quillon
