#pragma once

#include <chrono>

namespace quillon {

/// Ends the program on SIGTERM, SIGINT and SIGHUP, in time even when its threads hang, for example
/// on a disk that does not answer or a pipe that nobody reads. It is made once, before the first
/// thread is started and before the application.
class ProgramEnd
{
public:
    /// From this call on, a library that calls exit(), for example because the display is gone,
    /// ends the program at once and with success.
    explicit ProgramEnd(std::chrono::milliseconds patience);
    /// From this call on, the program leaves by itself with the status that it returns.
    ~ProgramEnd();
    ProgramEnd(const ProgramEnd &) = delete;
    ProgramEnd &operator=(const ProgramEnd &) = delete;

    /// Ends the process with success when the patience is over, unless it has ended before. Does
    /// nothing when there is no object. Safe from every thread.
    static void begin();
};

} // namespace quillon
