#pragma once

#include <chrono>
#include <string>
#include <string_view>

namespace quillon {

/// Prints one line about a failure to standard error.
void complain(std::string_view line);

/// Returns a time as the user's clock shows it, to the second, such as 2024-05-31 18:30:00.
std::string localTime(std::chrono::system_clock::time_point time);

/// Standard output. If the reader has closed its end, further output is dropped, which is not a
/// failure. Only one thread at a time may use this.
class Output
{
public:
    Output();
    void write(std::string_view bytes);
    /// Returns whether further output is dropped.
    bool isClosed() const { return error_ != 0; }
    /// Writes what is buffered. Returns false, and prints a line to standard error, when output was
    /// lost for any other reason than a closed reader.
    bool finish();

private:
    int error_ = 0;
};

} // namespace quillon
