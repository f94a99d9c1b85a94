#pragma once

#include <cstddef>
#include <cstdio>

#include <sys/types.h>

namespace quillon {

/// Keeps who writes to standard output from waiting for who reads it: while this lives, stdout is a
/// stream whose lines a thread carries on. Lines that a reader leaves lying beyond a limit are
/// lost. At most one object at a time; other threads write only while it lives.
class PatientOutput
{
public:
    /// Where the lines go is open as long as the process lives.
    explicit PatientOutput(int descriptor);
    /// Gives the lines that wait a moment to come out, and stdout its former meaning back.
    ~PatientOutput();
    PatientOutput(const PatientOutput &) = delete;
    PatientOutput &operator=(const PatientOutput &) = delete;

private:
    /// What waits and for what, shared with a thread that may hang for ever.
    struct Lines;

    static ssize_t take(void *lines, const char *bytes, std::size_t count);
    static void carryOn(Lines &lines);

    Lines *const lines_;
    std::FILE *const former_;
    std::FILE *stream_;
};

} // namespace quillon
