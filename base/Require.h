#pragma once

namespace quillon {

/// Prints "quillon: broken invariant: " and the text to standard error, and aborts.
[[noreturn]] void requireFailed(const char *what);

/// Aborts the program, in every build type, when one of its own invariants is broken. It is never
/// used for what the user's disk, settings or input may hold.
inline void require(bool holds, const char *what)
{
    if (!holds) [[unlikely]]
        requireFailed(what);
}

} // namespace quillon
