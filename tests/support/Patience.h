#pragma once

namespace quillon {

/// How long a test waits for what happens at once unless the machine is very busy, in milliseconds.
inline constexpr int PATIENCE = 20000;

} // namespace quillon
