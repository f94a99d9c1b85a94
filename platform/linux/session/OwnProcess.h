#pragma once

#include <chrono>
#include <cstdint>

namespace quillon {

/// Reads what the kernel knows of this process. Safe from every thread.
struct OwnProcess
{
    /// The time since the process was started, to a hundredth of a second. The time that a computer
    /// sleeps counts. Zero where the kernel does not tell.
    static std::chrono::duration<double> age();
    /// The memory in use, in bytes. Zero where the kernel does not tell.
    static std::uint64_t residentBytes();
};

} // namespace quillon
