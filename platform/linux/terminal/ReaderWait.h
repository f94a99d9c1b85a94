#pragma once

#include "platform/linux/disk/Descriptor.h"

#include <cstdio>

namespace quillon {

/// Waits until whoever reads an output stream of this process is gone.
class ReaderWait
{
public:
    /// The stream outlives this object.
    explicit ReaderWait(std::FILE *stream);

    /// Returns when the reader has closed its end, or after end(). A file has no reader, so only
    /// end() ends the wait for one.
    void await() const;
    /// Ends the wait, also one that begins later. Any thread may call this.
    void end() const;

private:
    const int stream_;
    const Descriptor end_;
};

} // namespace quillon
