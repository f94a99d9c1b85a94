#pragma once

namespace quillon {

/// Decides whether the desktop starts the program, without a window, when the user logs in. Main
/// thread only.
class Autostart
{
public:
    Autostart() = default;
    virtual ~Autostart() = default;
    Autostart(const Autostart &) = delete;
    Autostart &operator=(const Autostart &) = delete;

    /// Returns what the desktop will do at the next login, whoever arranged that.
    virtual bool isEnabled() const = 0;
    /// Returns false when the choice could not be stored. The reason is then on standard error, and
    /// everything is as before.
    virtual bool setEnabled(bool enabled) = 0;
};

} // namespace quillon
