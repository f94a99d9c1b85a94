#pragma once

namespace quillon {

/// Whether the desktop starts the program when the user logs in, without a window. Main thread
/// only.
class Autostart
{
public:
    Autostart() = default;
    virtual ~Autostart() = default;
    Autostart(const Autostart &) = delete;
    Autostart &operator=(const Autostart &) = delete;

    /// As the desktop will see it at the next login, whoever arranged it.
    virtual bool isEnabled() const = 0;
    /// False when it could not be stored, with the reason on standard error; then everything is as
    /// before.
    virtual bool setEnabled(bool enabled) = 0;
};

} // namespace quillon
