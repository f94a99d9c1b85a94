#pragma once

#include "platform/linux/bus/Deadline.h"
#include "platform/linux/windows/X11Strokes.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <sys/types.h>

namespace quillon {

/// A top-level window as its program and the window manager describe it.
struct DesktopWindow
{
    std::uint32_t id = 0;
    /// The process that the window belongs to; zero when it is unknown.
    pid_t process = 0;
    /// The second part of WM_CLASS, in lower case.
    std::string windowClass;
    std::string title;
    /// The window's object path on the session bus; empty unless it belongs to a GTK program.
    std::string gtkObjectPath;
    std::string gtkBusName;
    bool isMinimised = false;
};

/// The windows of all programs on the X11 display, seen through a connection of its own. Without
/// X11 nothing is found and nothing happens. Safe from every thread, but only one thread at a time
/// may wait.
class X11Windows
{
public:
    /// Connects to the display that the environment names.
    X11Windows();
    X11Windows(const X11Windows &) = delete;
    X11Windows &operator=(const X11Windows &) = delete;
    ~X11Windows();

    /// Returns whether these are the windows of all programs. Returns false without X11, and on
    /// Wayland, where only some programs still use X11.
    bool isComplete() const;

    /// Returns the window that has the keyboard or, if that is a dialogue, the window that it
    /// belongs to. Returns nothing when that is not an ordinary window.
    std::optional<DesktopWindow> active() const;
    /// Returns the window that has the keyboard, even if it is a dialogue; 0 when there is none.
    std::uint32_t activeId() const;
    /// Returns the ordinary windows of the current desktop, the topmost first.
    std::vector<DesktopWindow> stacked() const;
    /// Returns all windows that the window manager knows, in the order in which they came.
    std::vector<std::uint32_t> clients() const;
    std::string title(std::uint32_t window) const;
    /// Returns the process that the window belongs to; zero when it is unknown.
    pid_t process(std::uint32_t window) const;

    struct Box
    {
        int left = 0;
        int top = 0;
        int width = 0;
        int height = 0;

        bool operator==(const Box &) const = default;
    };
    /// Returns the place of the window's contents on the screen, or nothing when the window is
    /// gone.
    std::optional<Box> box(std::uint32_t window) const;

    /// Asks the window manager to raise the window and to give it the keyboard.
    void activate(std::uint32_t window) const;
    /// Asks for the keyboard and waits until the window has it. Returns false when the deadline
    /// passes first.
    bool activate(std::uint32_t window, Deadline deadline) const;
    /// Asks the window to close as its own button does.
    void close(std::uint32_t window) const;

    using Stroke = X11Strokes::Stroke;
    /// Sends the strokes to the window by X11Strokes::send().
    bool type(std::uint32_t window, const std::vector<Stroke> &strokes) const;
    /// Presses the stroke by X11Strokes::press(). Returns false also when the window does not have
    /// the keyboard.
    bool press(std::uint32_t window, const Stroke &stroke) const;

    /// Calls answer() until it returns true or the deadline has passed, again each time that a
    /// property of the window or of the root window changes. Returns the last answer.
    bool waitUntil(std::uint32_t window, const std::function<bool()> &answer,
                   Deadline deadline) const;

private:
    struct Description;

    std::vector<std::uint32_t> windowList(std::uint32_t property) const;
    std::vector<Description> describe(const std::vector<std::uint32_t> &windows) const;
    void tell(std::uint32_t window, std::uint32_t type, std::uint32_t first,
              std::uint32_t second) const;
    void watch(std::uint32_t window, bool isWatched) const;

    xcb_connection_t *x_ = nullptr;
    std::uint32_t root_ = 0;
    std::vector<std::uint32_t> atoms_;
};

} // namespace quillon
