#pragma once

#include <chrono>

namespace quillon {

/// Sees to it that the program ends in time, whatever its threads hang on: a disk that does not
/// answer, a pipe that nobody reads. Made once, before the event loop runs.
class ProgramEnd
{
public:
    /// From now on an exit() of a library, as when the display is gone, ends the program at once
    /// and with success.
    explicit ProgramEnd(std::chrono::milliseconds patience);

    /// The process ends with success when the patience is over, unless it has ended before. Does
    /// nothing without an object. Safe from every thread and from signal handlers.
    static void begin();
};

} // namespace quillon
