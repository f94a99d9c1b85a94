#pragma once

#include <optional>
#include <string>

namespace quillon {

/// Where a window stands on the desktop, in device-independent pixels: its frame's upper left
/// corner, and its size without the frame.
struct WindowPlace
{
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const WindowPlace &, const WindowPlace &) = default;
};

/// Remembers where windows stood, apart from the settings: losing it harms nothing. Safe from every
/// thread.
class WindowPlaces
{
public:
    WindowPlaces() = default;
    virtual ~WindowPlaces() = default;
    WindowPlaces(const WindowPlaces &) = delete;
    WindowPlaces &operator=(const WindowPlaces &) = delete;

    /// Absent when nothing usable is remembered of the window with this name. Whether a screen is
    /// there still is not asked.
    virtual std::optional<WindowPlace> place(const std::string &window) const = 0;
    /// False when it could not be kept, with the reason on standard error.
    virtual bool remember(const std::string &window, const WindowPlace &place) = 0;
};

} // namespace quillon
