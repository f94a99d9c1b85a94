#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace quillon {

/// Prints one line about a failure on standard error.
void complain(std::string_view line);

/// Returns a time as the user's clock shows it, to the second: 2024-05-31 18:30:00.
std::string localTime(std::chrono::system_clock::time_point time);

/// Standard output. It is no failure when the reader has closed its end; further output is dropped.
/// One thread at a time may use this.
class Output
{
public:
    Output();
    void write(std::string_view bytes);
    /// Returns whether further output is dropped.
    bool isClosed() const { return error_ != 0; }
    /// Writes what is buffered. False, with a line on standard error, when output was lost for any
    /// other reason than a reader that has gone.
    bool finish();

private:
    int error_ = 0;
};

} // namespace quillon
