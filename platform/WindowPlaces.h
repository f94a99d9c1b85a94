#pragma once

#include <optional>
#include <string>

namespace quillon {

/// A window's place on the desktop in device-independent pixels: the upper left corner of its
/// frame, and its size without the frame.
struct WindowPlace
{
    int left = 0;
    int top = 0;
    int width = 0;
    int height = 0;
    friend bool operator==(const WindowPlace &, const WindowPlace &) = default;
};

/// Remembers where windows were. It is kept apart from the settings, since losing it harms nothing.
/// Safe from every thread.
class WindowPlaces
{
public:
    WindowPlaces() = default;
    virtual ~WindowPlaces() = default;
    WindowPlaces(const WindowPlaces &) = delete;
    WindowPlaces &operator=(const WindowPlaces &) = delete;

    /// Returns nothing when nothing usable is remembered for the window of this name. The place may
    /// be on a screen that is no longer there.
    virtual std::optional<WindowPlace> place(const std::string &window) const = 0;
    /// Returns false when the place could not be stored. The reason is then on standard error.
    virtual bool remember(const std::string &window, const WindowPlace &place) = 0;
};

} // namespace quillon
