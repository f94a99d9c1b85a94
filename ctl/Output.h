#pragma once

#include <string_view>

namespace quillon {

/// Says one line about a failure on standard error.
void complain(std::string_view line);

/// Standard output. A reader that has closed its end is no failure: what is written afterwards
/// goes nowhere. One thread at a time.
class Output
{
public:
    Output();
    void write(std::string_view bytes);
    /// Nobody can see any more of what is written.
    bool isClosed() const { return error_ != 0; }
    /// Brings out what is left. False, with a line on standard error, when something was lost for
    /// another reason than a reader that went.
    bool finish();

private:
    int error_ = 0;
};

} // namespace quillon
