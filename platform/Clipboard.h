#pragma once

#include <string>

namespace quillon {

/// Writes to the user's clipboard. Main thread only.
class Clipboard
{
public:
    Clipboard() = default;
    virtual ~Clipboard() = default;
    Clipboard(const Clipboard &) = delete;
    Clipboard &operator=(const Clipboard &) = delete;

    /// Replaces the contents of the clipboard by plain text. Programs that accept bytes receive
    /// bytes that are not UTF-8 unchanged.
    virtual void setString(const std::string &text) = 0;
};

} // namespace quillon
