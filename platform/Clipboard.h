#pragma once

#include <string>

namespace quillon {

/// The user's clipboard. Main thread only.
class Clipboard
{
public:
    Clipboard() = default;
    virtual ~Clipboard() = default;
    Clipboard(const Clipboard &) = delete;
    Clipboard &operator=(const Clipboard &) = delete;

    /// Replaces what is on the clipboard by plain text. Bytes that are not UTF-8 are handed on as
    /// they are to programs that take bytes.
    virtual void setString(const std::string &text) = 0;
};

} // namespace quillon
