#pragma once

#include <string>

namespace quillon {

/// The right to the keyboard that this process was given by who started it, as Wayland or else as
/// X11 has it; empty when there is none or it is no text. Main thread only.
std::string activationToken();
/// The same; from now on what this process starts does not inherit it.
std::string takeActivationToken();

} // namespace quillon
