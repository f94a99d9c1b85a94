#pragma once

#include <cstddef>
#include <cstdio>

#include <sys/types.h>

namespace quillon {

/// Lets the program write to standard output without waiting for the reader. While this object
/// lives, stdout is a stream whose lines a thread passes on. Lines beyond a limit that the reader
/// does not take are lost. There is at most one object at a time, and other threads write only
/// while it lives.
class BoundedOutput
{
public:
    /// The descriptor stays open as long as the process lives.
    explicit BoundedOutput(int descriptor);
    /// Waits a moment for the remaining lines, and restores stdout.
    ~BoundedOutput();
    BoundedOutput(const BoundedOutput &) = delete;
    BoundedOutput &operator=(const BoundedOutput &) = delete;

private:
    /// Holds the lines that wait, and is shared with a thread that may hang for ever.
    struct Lines;

    static ssize_t take(void *lines, const char *bytes, std::size_t count);
    static void carryOn(Lines &lines);

    Lines *const lines_;
    std::FILE *const former_;
    std::FILE *stream_;
};

} // namespace quillon
