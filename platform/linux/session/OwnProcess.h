#pragma once

#include <chrono>
#include <cstdint>

namespace quillon {

/// Offers what the kernel and the C library do for this process as a whole. Safe from every thread.
struct OwnProcess
{
    /// The time since the process was started, to a hundredth of a second. The time that a computer
    /// sleeps counts. Zero where the kernel does not tell.
    static std::chrono::duration<double> age();
    /// The memory in use, in bytes. Zero where the kernel does not tell.
    static std::uint64_t residentBytes();
    /// Has the C library give memory back that is free again; called before there is a second
    /// thread. By default each thread of a crawl leaves an arena behind whose free end is kept for
    /// ever, and so are large buffers: 40 MB with 300,000 folders.
    static void keepHeapSmall();
};

} // namespace quillon
