#pragma once

#include <cstdint>
#include <string>

namespace quillon {

/// Knows and does what the toolkit cannot on the window system. Main thread only.
class WindowSystem
{
public:
    WindowSystem() = default;
    virtual ~WindowSystem() = default;
    WindowSystem(const WindowSystem &) = delete;
    WindowSystem &operator=(const WindowSystem &) = delete;

    /// Keeps a window that is about to be shown out of the taskbar and the pager until it is
    /// hidden. The window is given by the system's own number.
    virtual void keepOutOfTaskbar(std::uintptr_t window) = 0;
    /// Makes a window that has not been shown yet a panel of the desktop. The desktop shows a panel
    /// above all windows, lists it nowhere, centres it on the screen in use and gives it the
    /// keyboard at once. Returns false when the desktop has no panels and the window remains an
    /// ordinary one.
    virtual bool makePanel(std::uintptr_t window) = 0;
    /// Sets how far the upper edge of a panel is below the upper edge of the screen's free area, in
    /// device-independent pixels.
    virtual void setPanelTop(std::uintptr_t window, int top) = 0;
    /// Returns true when translucent windows are blended with the windows below them.
    virtual bool isComposited() const = 0;
    /// Sets how much of a window is a shadow that the program draws itself: a margin of so many
    /// device pixels on every side, 0 for none. Window managers and compositors then treat the rest
    /// as the window and add no shadow of their own.
    virtual void setShadowMargin(std::uintptr_t window, int margin) = 0;
    /// Cuts off what is outside the round corners of a window, whose measures are in device pixels.
    /// With a radius of 0 the whole window is shown.
    virtual void cutCorners(std::uintptr_t window, int width, int height, int radius) = 0;

    /// Returns the window that has the keyboard, whichever program it belongs to. The number is 0
    /// when there is none, or when the system does not say.
    virtual std::uintptr_t activeWindow() const = 0;
    /// Asks for the keyboard for a window that activeWindow() returned. Nothing happens when the
    /// window has gone.
    virtual void activate(std::uintptr_t window) = 0;
    /// Asks for the keyboard for a window of this program that is already shown. The token is the
    /// right that the launcher gave; the launcher learns that it need not wait any longer.
    virtual void activate(std::uintptr_t window, const std::string &activationToken) = 0;
    /// Asks the system for a token by which a program that is started may take the keyboard from
    /// the window of this program that has it. The token is empty where programs need none.
    virtual std::string requestActivationToken() = 0;
};

} // namespace quillon
