#pragma once

#include <cstdint>
#include <string>

namespace quillon {

/// What the window system is told or asked beyond what the toolkit does. Main thread only.
class WindowSystem
{
public:
    WindowSystem() = default;
    virtual ~WindowSystem() = default;
    WindowSystem(const WindowSystem &) = delete;
    WindowSystem &operator=(const WindowSystem &) = delete;

    /// Keeps a window that is about to be shown out of the taskbar and the pager until it is
    /// hidden. The window is given by the system's own number for it.
    virtual void keepOutOfTaskbar(std::uintptr_t window) = 0;
    /// True when translucent windows are blended with what is below them.
    virtual bool isComposited() const = 0;
    /// Says how much of a window is a shadow that the program draws itself: a margin of so many
    /// device pixels on every side, 0 for none. Window managers and compositors then treat the rest
    /// as the window and add no shadow of their own.
    virtual void setShadowMargin(std::uintptr_t window, int margin) = 0;

    /// The window that has the keyboard, of whichever program; 0 when there is none or the system
    /// does not tell.
    virtual std::uintptr_t activeWindow() const = 0;
    /// Asks for the keyboard for a window that activeWindow() told; nothing happens when it has
    /// gone.
    virtual void activate(std::uintptr_t window) = 0;
    /// Asks for the keyboard for a window of this program that is shown already, by the right that
    /// who asked for the window was given; the launcher is told that what it waited for is there.
    virtual void activate(std::uintptr_t window, const std::string &activationToken) = 0;
};

} // namespace quillon
